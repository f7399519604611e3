#include "tools/feed/feed_run.hpp"

#include "tools/feed/summary.hpp"
#include "tools/feed/timeline.hpp"
#include "tools/nmea/line_splitter.hpp"

#include <algorithm>
#include <chrono>
#include <thread>

namespace tallowmere::feed {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto kTurn = 50ms; // how long a stop, or a man-overboard call, may have to wait

/// One running feed: its loop and what passes between its parts.
class Run {
  public:
    Run(Feed& feed, Source& source, const RunOptions& options, const std::atomic<bool>& stop, Reporter& reporter,
        const std::function<void()>& everyTurn)
        : feed_(feed), source_(source), speed_(options.speed), stop_(stop), reporter_(reporter), everyTurn_(everyTurn),
          paced_(source.isRecording() && options.speed > 0.0) {}

    bool untilTheEnd() {
        while (!stop_) {
            turn();
            if (deliverNext()) continue;
            if (ended_) break;
            readMore();
        }
        reporter_.endProgress();
        return !failed_;
    }

  private:
    void turn() {
        everyTurn_();
        if (reporter_.progressDue(Clock::now())) reporter_.progress(progressText(feed_.counts()));
    }

    void readMore() {
        std::string bytes;
        const Source::State state = source_.read(bytes, kTurn);
        std::string_view rest = bytes;
        while (const auto line = splitter_.next(rest)) take(*line);
        if (state != Source::State::End && state != Source::State::Failed) return;
        if (const auto line = splitter_.finish()) take(*line);
        timeline_.finish();
        ended_ = true;
        failed_ = state == Source::State::Failed;
    }

    void take(const nmea::Line& line) {
        if (paced_)
            timeline_.add(line, timeIn(line));
        else
            feed_.take(line);
    }

    /// Gives the next line of a recording to the feed when it is due. False when there is none to wait for.
    bool deliverNext() {
        auto next = timeline_.next();
        if (!next) return false;
        const auto due = start_ + std::chrono::duration_cast<Clock::duration>(
                                      std::chrono::duration<double>(std::min(next->due / speed_, kLongestWait)));
        for (auto now = Clock::now(); now < due && !stop_; now = Clock::now()) {
            std::this_thread::sleep_for(std::min<Clock::duration>(kTurn, due - now));
            turn();
        }
        if (!stop_) feed_.take(next->line());
        return true;
    }

    static constexpr double kLongestWait = 1e9; // seconds; keeps the conversion to ticks in range

    Feed& feed_;
    Source& source_;
    const double speed_;
    const std::atomic<bool>& stop_;
    Reporter& reporter_;
    const std::function<void()>& everyTurn_;
    const bool paced_;
    const Clock::time_point start_ = Clock::now();
    nmea::LineSplitter splitter_;
    Timeline timeline_;
    bool ended_ = false;
    bool failed_ = false;
};

} // namespace

bool runFeed(Feed& feed, Source& source, const RunOptions& options, const std::atomic<bool>& stop, Reporter& reporter,
             const std::function<void()>& everyTurn) {
    return Run(feed, source, options, stop, reporter, everyTurn).untilTheEnd();
}

} // namespace tallowmere::feed

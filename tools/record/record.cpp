#include "tools/record/record.hpp"

#include "core/channels/value_age.hpp"
#include "tools/commands/channel_finder.hpp"
#include "tools/commands/format.hpp"
#include "tools/commands/screen_text.hpp"
#include "tools/commands/text.hpp"
#include "tools/record/moment_text.hpp"
#include "tools/record/pace.hpp"
#include "tools/record/recorder.hpp"

#include <cmath>
#include <cstdio>

namespace tallowmere::recording {
namespace {

// Less than a second is lost when the plug is pulled, the time that a commit takes included.
constexpr std::int64_t kCommitEvery = kTicksPerSecond / 2;
constexpr std::int64_t kToldEvery = kTicksPerSecond;

void complain(const tools::CommandContext& context, const std::string& text) {
    context.err << "tallowmere record: " << text << '\n';
}

/// Empty, with the reasons told, when one of the channels can't be recorded.
std::optional<Selection> select(const tools::CommandContext& context, const RecordOptions& options) {
    SectionReader section(context.platform);
    auto channels = tools::findOrTell(section.area(), options.channels, context.err, "tallowmere record");
    if (!channels) return std::nullopt;
    for (const ChannelIndex channel : *channels) {
        if (isRecordable(channel)) continue;
        complain(context, "channel " + std::to_string(channel) +
                              (isAlternating(channel) ? " only stands for others; name one of them"
                                                      : " is the clock, which is in every row"));
        return std::nullopt;
    }
    std::ranges::sort(*channels);
    channels->erase(std::unique(channels->begin(), channels->end()), channels->end());
    Selection selection{std::move(*channels), {}};
    for (const int boat : options.boats) selection.boats.push_back(static_cast<BoatIndex>(boat));
    std::ranges::sort(selection.boats);
    selection.boats.erase(std::unique(selection.boats.begin(), selection.boats.end()), selection.boats.end());
    return selection;
}

/// "tallowmere-20251121-123456.sqlite"
std::string nameByTime(std::int64_t now, bool csv) {
    std::string digits;
    for (const char c : momentText(now).substr(0, 19)) {
        if (c == 'T') digits += '-';
        if (c >= '0' && c <= '9') digits += c;
    }
    return "tallowmere-" + digits + (csv ? ".csv" : ".sqlite");
}

std::string megabytes(std::uint64_t bytes) {
    char text[40];
    std::snprintf(text, sizeof text, "%.1f MB", static_cast<double>(bytes) / 1e6);
    return text;
}

/// One recording from its first look to its last.
class Run {
  public:
    Run(const tools::CommandContext& context, const RecordOptions& options, RecordingWriter& writer, Recorder& recorder)
        : context_(context), options_(options), writer_(writer), recorder_(recorder), elapsed_(context.platform.now()) {
    }

    /// False when the writer failed.
    bool toTheEnd() {
        const auto period = std::llround(1000.0 / options_.rate);
        do {
            if (!recorder_.look() || !commitWhenDue()) return false;
            tellWaiting();
            tellReplay();
            tellProgress();
        } while (!isOver() && pause(context_, period) && goOn());
        return recorder_.finish() && writer_.close();
    }

    [[nodiscard]] double seconds() const noexcept { return elapsed_.seconds(); }
    void endProgress() {
        if (shown_) context_.err << tools::kEraseLine;
        shown_ = false;
    }

  private:
    bool goOn() {
        elapsed_.meet(context_.platform.now());
        return !isOver();
    }
    [[nodiscard]] bool isOver() const noexcept {
        return context_.stop || (options_.seconds > 0.0 && elapsed_.seconds() >= options_.seconds);
    }

    bool commitWhenDue() {
        if (elapsed_.ticks() - committed_ < kCommitEvery) return true;
        committed_ = elapsed_.ticks();
        return writer_.commit();
    }

    void tellWaiting() {
        const bool waits = !recorder_.attached();
        if (waits && !waiting_) {
            endProgress();
            complain(context_, "waiting for shared data; no program holds any");
            context_.err.flush();
        }
        waiting_ = waits;
    }

    void tellReplay() {
        if (recorder_.replay() && !replay_) {
            endProgress();
            complain(context_, "a recording is being played (REPLAY); it is recorded as such");
        }
        replay_ = recorder_.replay();
    }

    void tellProgress() {
        if (!options_.progress || elapsed_.ticks() - told_ < kToldEvery) return;
        const RecordCounts& counts = recorder_.counts();
        const double seconds = static_cast<double>(elapsed_.ticks() - told_) / static_cast<double>(kTicksPerSecond);
        const auto rate = std::llround(static_cast<double>(counts.rows - rowsTold_) / seconds);
        const auto age = ageSeconds(counts.newest, context_.platform.now());
        context_.err << tools::kEraseLine << rate << " values/s, " << counts.rows << " rows, " << counts.boats
                     << (counts.boats == 1 ? " boat, " : " boats, ") << megabytes(writer_.bytes()) << ", newest "
                     << tools::formatAge(age) << std::flush;
        shown_ = true;
        told_ = elapsed_.ticks();
        rowsTold_ = counts.rows;
    }

    const tools::CommandContext& context_;
    const RecordOptions& options_;
    RecordingWriter& writer_;
    Recorder& recorder_;
    Elapsed elapsed_;
    std::int64_t committed_ = 0;
    std::int64_t told_ = 0;
    std::uint64_t rowsTold_ = 0;
    bool waiting_ = false;
    bool replay_ = false;
    bool shown_ = false;
};

} // namespace

int runRecord(const tools::CommandContext& context, const RecordOptions& options) {
    auto selection = select(context, options);
    if (!selection) return tools::exit_code::kNotFound;
    const bool csv = options.csv || tools::lowerCased(options.file).ends_with(".csv");
    const std::string file = options.file.empty() ? nameByTime(context.platform.now(), csv) : options.file;
    const std::string shown = tools::printable(file);
    const OpenedWriter opened = csv ? openCsvWriter(file) : openSqliteWriter(file);
    if (!opened.writer) {
        complain(context, "can't record into " + shown + ": " + opened.error);
        return tools::exit_code::kSystem;
    }
    Recorder recorder(context.platform, *opened.writer, std::move(*selection), "tallowmere " TALLOWMERE_VERSION);
    Run run(context, options, *opened.writer, recorder);
    const bool whole = run.toTheEnd();
    run.endProgress();
    const RecordCounts& counts = recorder.counts();
    if (!whole) complain(context, shown + ": " + opened.writer->error() + "; the rest is missing");
    context.err << shown << ": " << counts.rows << " rows of " << counts.boats
                << (counts.boats == 1 ? " boat in " : " boats in ") << tools::formatNumber(run.seconds(), 1) << " s, "
                << megabytes(opened.writer->bytes()) << '\n';
    return whole ? tools::exit_code::kDone : tools::exit_code::kSystem;
}

} // namespace tallowmere::recording

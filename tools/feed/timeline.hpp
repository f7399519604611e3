// When the lines of a recording are due.
//
// The only clock in a recording is the time that some of its sentences carry, once a second or, from some
// devices, once in ten. The lines between two such times are spread evenly over the time between them.
#pragma once

#include "tools/nmea/line_splitter.hpp"

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace tallowmere::feed {

struct TimedLine {
    std::string text;
    bool tooLong = false;
    std::uint64_t number = 0;
    double due = 0.0; // seconds since the start of the recording

    [[nodiscard]] nmea::Line line() const noexcept { return {text, tooLong, number}; }
};

class Timeline {
  public:
    /// A longer step, forwards or back, is a gap in the recording and is not waited for.
    static constexpr double kLongestStep = 60.0;
    /// So many lines without a new time are let go at the pace of the lines before.
    static constexpr std::size_t kMostWaiting = 5000;
    /// A serial line of 4800 baud, ten bits a character: the pace of a recording that has no time at all.
    static constexpr double kSecondsPerByte = 10.0 / 4800.0;

    /// timeOfDay   the seconds since midnight that the line carries, if it does
    void add(const nmea::Line& line, std::optional<double> timeOfDay);
    /// The recording has ended: everything left gets its due time.
    void finish();
    /// The next line whose due time is known.
    [[nodiscard]] std::optional<TimedLine> next();

  private:
    void meet(double timeOfDay);
    void release(double seconds);
    void releaseAtPace();

    std::vector<TimedLine> waiting_; // since the last new time
    std::size_t waitingBytes_ = 0;
    std::deque<TimedLine> ready_;
    std::optional<double> mark_; // the latest time met
    double clock_ = 0.0;         // due time of the first waiting line
    double pace_ = kSecondsPerByte;
};

} // namespace tallowmere::feed

// The values of one channel of one boat as lines over time.
#pragma once

#include "tools/chart/ticks.hpp"
#include "tools/record/recording.hpp"

#include <string>
#include <vector>

namespace tallowmere::recording {

struct TimePoint {
    std::int64_t time; // 100 ns since 1601-01-01 UTC
    double value;      // in the channel's unit; spans of time in seconds
};

/// Lines are interrupted where there was no value, and where none came for longer than the channel's time-out.
struct TimeSeries {
    ChannelInfo channel;
    std::vector<std::vector<TimePoint>> lines; // none is empty; times rise within each
    std::size_t left = 0;                      // values too large to be drawn

    /// Adds what was recorded, in the order of recording. A value older than the one before is left out.
    void add(const Value& value);
    /// The next value begins a new line.
    void interrupt() noexcept { interrupted_ = true; }

  private:
    bool interrupted_ = true;
};

/// True when a chart can show it: all but moments, which are no quantities.
[[nodiscard]] bool isDrawable(const ChannelInfo& channel) noexcept;

/// A series ready to be drawn. Angles lie within one turn that begins at `y.low`, or where they leave most room; a
/// step over half a turn leaves the picture at one edge and comes in at the other.
struct Drawing {
    std::vector<std::vector<TimePoint>> lines;
    tools::Range y{0, 1};
    bool angle = false; // labels are to be brought into the channel's range
    double highest = 0; // of that range: 360 or 180

    /// An angle as the channel shows it.
    [[nodiscard]] double shown(double value) const noexcept;
};
[[nodiscard]] Drawing draw(const TimeSeries& series);

} // namespace tallowmere::recording

// The values of one channel of one boat as lines over time.
#pragma once

#include "tools/chart/ticks.hpp"
#include "tools/record/recording.hpp"

#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace tallowmere::recording {

struct TimePoint {
    std::int64_t time; // 100 ns since 1601-01-01 UTC
    double value;      // in the channel's unit; spans of time in seconds
};

/// Lines are interrupted where there was no value, and where none came for longer than the channel's time-out. They go
/// straight from value to value, but in steps where values stand until the next one comes.
struct TimeSeries {
    ChannelInfo channel;
    std::vector<std::vector<TimePoint>> lines; // none is empty; times rise within each
    std::size_t left = 0;                      // values too large to be drawn

    /// True for channels without a time-out, which are written when they change, and for codes, between which there is
    /// nothing: they are drawn in steps.
    [[nodiscard]] bool isStepped() const noexcept;

    /// From this moment on is drawn: what stands then in steps, however old it is, begins there.
    void begin(std::int64_t time) noexcept { begin_ = time; }
    /// Adds what was recorded, in the order of recording. A value older than the one before is left out.
    void add(const Value& value);
    /// Until this moment was recorded, or is to be drawn; the next value begins a new line.
    void end(std::int64_t time);

  private:
    [[nodiscard]] std::int64_t freshUntil(std::int64_t time) const noexcept;
    void settle();
    bool take(const Value& value); // true when it put a point
    void reach(std::int64_t time);
    void put(TimePoint point);

    std::int64_t begin_ = std::numeric_limits<std::int64_t>::min();
    std::optional<Value> before_; // of steps: what came last of what is older than that
    std::int64_t freshUntil_ = 0; // the value at the end of the last line
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

#include "tools/record/time_series.hpp"

#include "core/channels/time_scale.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tallowmere::recording {
namespace {

constexpr double kLargest = 1e9; // beyond it nothing measured on a boat lies
constexpr double kTurn = 360.0;
constexpr double kRoom = 60.0; // degrees without a value, for angles to be drawn without an edge
constexpr double kAir = 0.05;  // of the height, above and below

/// The end of the range in which a class of angles is shown; 0 for all others.
double highestAngle(UnitClass unitClass) noexcept {
    if (unitClass == UnitClass::Bearing) return kTurn;
    return isSignedAngle(unitClass) || unitClass == UnitClass::Longitude ? kTurn / 2 : 0.0;
}

double numberOf(const Value& value) noexcept {
    const Record record = value.record(value.kind);
    switch (value.kind) {
    case StorageKind::Byte:
        return record.byte();
    case StorageKind::Integer:
        return record.integer();
    case StorageKind::Time:
        return static_cast<double>(record.ticks()) / static_cast<double>(kTicksPerSecond);
    case StorageKind::Double:
        break;
    }
    return record.number();
}

/// An angle within the turn that begins at `low`.
double within(double low, double value) noexcept {
    const double above = std::fmod(value - low, kTurn);
    return low + (above < 0.0 ? above + kTurn : above);
}

/// Where a turn that holds all angles is best cut: in the middle of the widest part without any. Empty when there is
/// no such part.
std::optional<double> bestCut(const TimeSeries& series) {
    std::vector<double> angles;
    for (const auto& line : series.lines)
        for (const TimePoint& point : line) angles.push_back(within(0.0, point.value));
    if (angles.empty()) return std::nullopt;
    std::ranges::sort(angles);
    double widest = angles.front() + kTurn - angles.back();
    double cut = angles.back() + widest / 2;
    for (std::size_t i = 1; i < angles.size(); ++i) {
        if (angles[i] - angles[i - 1] <= widest) continue;
        widest = angles[i] - angles[i - 1];
        cut = angles[i - 1] + widest / 2;
    }
    return widest >= kRoom ? std::optional(cut) : std::nullopt;
}

/// Brings a line of angles into the turn; at a step over half a turn it goes out at the edge and comes in again.
void drawAngles(const std::vector<TimePoint>& line, double low, std::vector<std::vector<TimePoint>>& lines) {
    lines.emplace_back();
    for (const TimePoint& point : line) {
        const TimePoint next{point.time, within(low, point.value)};
        std::vector<TimePoint>& current = lines.back();
        const double step = current.empty() ? 0.0 : next.value - current.back().value;
        if (std::fabs(step) > kTurn / 2) {
            const bool up = step < 0.0; // out at the top
            const double end = up ? low + kTurn : low;
            const double way = kTurn - std::fabs(step);
            const double part = way > 0.0 ? std::fabs(end - current.back().value) / way : 0.0;
            const auto at =
                current.back().time + std::llround(part * static_cast<double>(next.time - current.back().time));
            current.push_back({at, end});
            lines.push_back({{at, up ? low : low + kTurn}});
        }
        lines.back().push_back(next);
    }
}

tools::Range rangeOf(const std::vector<std::vector<TimePoint>>& lines) {
    bool any = false;
    tools::Range range{0, 1};
    for (const auto& line : lines)
        for (const TimePoint& point : line) {
            range.low = any ? std::min(range.low, point.value) : point.value;
            range.high = any ? std::max(range.high, point.value) : point.value;
            any = true;
        }
    return range;
}

/// With room above and below, and never so narrow that ticks could not tell the values apart.
tools::Range withAir(tools::Range range) {
    const double least = std::max({1e-5, std::fabs(range.low) * 1e-6, std::fabs(range.high) * 1e-6});
    const double missing = std::max(0.0, least - (range.high - range.low));
    const double air = (range.high - range.low + missing) * kAir + missing / 2;
    return {range.low - air, range.high + air};
}

} // namespace

bool TimeSeries::isStepped() const noexcept {
    return channel.timeoutSeconds == 0 || channel.unitClass == UnitClass::IntegerCode;
}

void TimeSeries::add(const Value& value) {
    if (isStepped() && value.time < begin_) {
        before_ = value;
        return;
    }
    settle();
    take(value);
}

void TimeSeries::end(std::int64_t time) {
    if (time >= begin_) settle();
    before_.reset();
    reach(time);
    interrupted_ = true;
}

std::int64_t TimeSeries::freshUntil(std::int64_t time) const noexcept {
    return channel.timeoutSeconds == 0 ? std::numeric_limits<std::int64_t>::max()
                                       : time + channel.timeoutSeconds * kTicksPerSecond;
}

/// What stands where the series begins.
void TimeSeries::settle() {
    if (!before_) return;
    Value value = *std::exchange(before_, std::nullopt);
    const std::int64_t until = freshUntil(value.time);
    if (until < begin_) return;
    value.time = begin_;
    if (take(value)) freshUntil_ = until;
}

bool TimeSeries::take(const Value& value) {
    reach(value.time);
    if (!value.payload) {
        interrupted_ = true;
        return false;
    }
    const double number = numberOf(value);
    if (!(std::fabs(number) <= kLargest)) { // not a number, too
        ++left;
        interrupted_ = true;
        return false;
    }
    if (!lines.empty() && value.time < lines.back().back().time) return false;
    put({value.time, number});
    freshUntil_ = freshUntil(value.time);
    return true;
}

/// The line goes on to this moment, or ends where its value got stale.
void TimeSeries::reach(std::int64_t time) {
    if (interrupted_) return;
    if (isStepped()) {
        const TimePoint last = lines.back().back();
        const TimePoint held{std::min(time, freshUntil_), last.value};
        if (held.time > last.time) put(held);
    }
    interrupted_ = time > freshUntil_;
}

void TimeSeries::put(TimePoint point) {
    if (std::exchange(interrupted_, false)) lines.emplace_back();
    std::vector<TimePoint>& line = lines.back();
    // Of a value that stands, only where it begins and ends.
    const std::size_t count = line.size();
    if (isStepped() && count > 1 && line[count - 2].value == point.value && line[count - 1].value == point.value)
        line.back() = point;
    else
        line.push_back(point);
}

bool isDrawable(const ChannelInfo& channel) noexcept {
    return channel.unitClass != UnitClass::DateTime;
}

double Drawing::shown(double value) const noexcept {
    if (!angle) return value;
    const double lowest = highest - kTurn;
    const double turned = within(lowest, value);
    // Both ends of a turn are the same angle: 0 and 180, but 360 at the upper edge of a whole compass.
    const bool upper = highest < kTurn || value == y.high;
    return turned == lowest && upper && value > lowest ? highest : turned;
}

Drawing draw(const TimeSeries& series) {
    Drawing drawing;
    drawing.highest = highestAngle(series.channel.unitClass);
    drawing.angle = drawing.highest != 0.0;
    if (!drawing.angle) {
        drawing.lines = series.lines;
        drawing.y = withAir(rangeOf(drawing.lines));
        return drawing;
    }
    const auto cut = bestCut(series);
    const double low = cut ? *cut : drawing.highest - kTurn;
    for (const auto& line : series.lines) drawAngles(line, low, drawing.lines);
    drawing.y = cut ? withAir(rangeOf(drawing.lines)) : tools::Range{low, low + kTurn};
    return drawing;
}

} // namespace tallowmere::recording

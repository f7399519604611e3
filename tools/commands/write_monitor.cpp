#include "tools/commands/write_monitor.hpp"

#include "core/channels/value_reading.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tallowmere::tools {
namespace {

constexpr std::int64_t kLeastTime = 10'000'000; // a second; a rate of less says nothing
constexpr std::size_t kLeastValues = 12;
constexpr std::size_t kLeastOfEach = 3;
constexpr std::size_t kLeastChanges = 7;
constexpr double kTimesAsFar = 3.0;
constexpr std::size_t kWindows[] = {16, 32, 64, WriteMonitor::kValues};
constexpr double kSteps = 5.0; // of the last decimal shown: less is a sensor between two readings

bool isAngle(UnitClass unitClass) noexcept {
    return unitClass == UnitClass::Bearing || isSignedAngle(unitClass);
}

/// Five steps of the last decimal that the channel shows.
double leastGapOf(const SharedArea& area, ChannelIndex channel) noexcept {
    constexpr unsigned kMostPrecision = 12; // more, or none, says nothing
    const unsigned precision = readOnce(area.settings[channel].precision);
    return kSteps * std::pow(10.0, precision > kMostPrecision ? 0.0 : -static_cast<double>(precision));
}

/// Angles either side of north lie close together.
std::vector<double> besideTheFirst(std::vector<double> angles) {
    for (double& angle : angles) angle = angles.front() + std::remainder(angle - angles.front(), 360.0);
    return angles;
}

void forgetBefore(std::deque<std::int64_t>& moments, std::int64_t first) {
    while (!moments.empty() && moments.front() < first) moments.pop_front();
}

double widestStep(std::span<const double> values) {
    double widest = 0.0;
    for (std::size_t i = 1; i < values.size(); ++i) widest = std::max(widest, std::abs(values[i] - values[i - 1]));
    return widest;
}

/// Values as they come, each given to the sequence that it continues.
class TwoSequences {
  public:
    TwoSequences(double first, double widestStep) : last_{first, first}, apart_(widestStep / 2.0) {}

    void add(double value) {
        const double distances[] = {std::abs(value - last_[0]), std::abs(value - last_[1])};
        std::size_t nearer = distances[1] < distances[0] ? 1 : 0;
        if (counts_[1] == 0) nearer = distances[0] > apart_ ? 1 : 0;
        if (counts_[nearer] != 0) ownStep_ = std::max(ownStep_, distances[nearer]);
        if (counts_[1 - nearer] != 0) gap_ = std::min(gap_, distances[1 - nearer]);
        if (nearer != current_) ++changes_;
        current_ = nearer;
        last_[nearer] = value;
        ++counts_[nearer];
    }
    [[nodiscard]] bool areTwo(double leastGap) const {
        return std::min(counts_[0], counts_[1]) >= kLeastOfEach && changes_ >= kLeastChanges && gap_ >= leastGap &&
               gap_ >= kTimesAsFar * ownStep_;
    }

  private:
    double last_[2];
    double apart_;
    std::size_t counts_[2] = {1, 0};
    std::size_t current_ = 0;
    std::size_t changes_ = 0;
    double ownStep_ = 0.0;                                 // the widest within a sequence
    double gap_ = std::numeric_limits<double>::infinity(); // the narrowest between them
};

} // namespace

bool areTwoSequences(std::span<const double> values, double leastGap) {
    const auto isUnusable = [](double value) { return !std::isfinite(value) || value == NO_VALUE; };
    if (values.size() < kLeastValues || std::ranges::any_of(values, isUnusable)) return false;
    const double widest = widestStep(values);
    if (!std::isfinite(widest) || !(widest >= leastGap)) return false;
    TwoSequences found(values.front(), widest);
    for (const double value : values.subspan(1)) found.add(value);
    return found.areTwo(leastGap);
}

bool jumpsBetweenTwoLevels(std::span<const double> values, double leastGap) {
    for (const std::size_t count : kWindows) {
        if (areTwoSequences(values.last(std::min(count, values.size())), leastGap)) return true;
        if (count >= values.size()) break; // all of them
    }
    return false;
}

void WriteMonitor::look(const SharedArea& area, BoatIndex boat, std::int64_t now) {
    if (!looks_.empty() && now < looks_.back()) clear();
    looks_.push_back(now);
    forgetBefore(looks_, now - kWindow);
    for (ChannelIndex index = 0; index < kChannelCount; ++index) {
        Channel& channel = channels_[index];
        forgetBefore(channel.seen, now - kWindow);
        const auto slot = valueSlotOf(area, index, boat);
        if (!slot) continue;
        const std::int64_t stamp = readOnce(*slot.stamp);
        if (channel.known && stamp == channel.stamp) continue;
        const bool first = !channel.known;
        channel.known = true;
        channel.stamp = stamp;
        if (first) continue; // when that was written is not known
        channel.leastGap = leastGapOf(area, index);
        channel.angle = isAngle(unitClassOf(&area, index));
        const Record record = asDeclared(&area, index, loadRecord(*slot.current));
        note(channel, recordAsDouble(&area, index, record).value, now);
    }
}

void WriteMonitor::note(Channel& channel, double value, std::int64_t now) const {
    channel.seen.push_back(now);
    channel.last.push_back({now, value});
    if (channel.last.size() > kValues) channel.last.pop_front();
}

WriteRate WriteMonitor::of(ChannelIndex index) const {
    WriteRate rate;
    if (index >= channels_.size() || looks_.size() < 2) return rate;
    const Channel& channel = channels_[index];
    const std::int64_t span = looks_.back() - looks_.front();
    rate.known = channel.known && span >= kLeastTime;
    if (!rate.known) return rate;
    rate.perSecond = static_cast<double>(channel.seen.size()) * 1e7 / static_cast<double>(span);
    rate.atLeast = 2 * channel.seen.size() >= looks_.size();
    std::vector<double> values;
    for (const Write& write : channel.last)
        if (write.seen >= looks_.back() - kRecent) values.push_back(write.value);
    if (channel.angle && !values.empty()) values = besideTheFirst(std::move(values));
    rate.twoLevels = jumpsBetweenTwoLevels(values, channel.leastGap);
    return rate;
}

void WriteMonitor::clear() {
    channels_.assign(kChannelCount, {});
    looks_.clear();
}

} // namespace tallowmere::tools

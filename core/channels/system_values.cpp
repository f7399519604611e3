#include "core/channels/system_values.hpp"

#include <array>
#include <cmath>
#include <limits>

namespace tallowmere {
namespace {

struct IntegerRange {
    std::int32_t low;
    std::int32_t high;
};

constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();

constexpr std::array<IntegerRange, kSystemIntegerCount> kIntegerRanges{{
    {0, kMax},    // 0
    {0, 2},       // 1 depth unit
    {0, 2},       // 2 speed unit
    {0, 5},       // 3 distance unit
    {0, 5},       // 4 second distance unit
    {0, 1},       // 5
    {0, 4},       // 6 fix mode
    {0, kMax},    // 7 fix sub-mode
    {0, 2},       // 8
    {0, 4},       // 9 pressure unit
    {kMin, kMax}, // 10 as given
    {kMin, kMax}, // 11 as given
    {kMin, kMax}, // 12 as given
}};

/// Holds a double in a range; a NaN becomes the lower bound.
double clampNumber(double value, double low, double high) noexcept {
    if (!std::isgreaterequal(value, low)) return low;
    return value > high ? high : value;
}

} // namespace

bool SystemValues::setVariable(std::size_t index, double value) noexcept {
    if (area_ == nullptr || index >= kSystemVariableCount) return false;
    if (index == 0) value = clampNumber(value, 1.0, std::numeric_limits<double>::infinity());
    if (index == 5) value = clampNumber(value, 0.01, 10.0);
    writeOnce(area_->systemVariables[index], value);
    return true;
}

void SystemValues::setFlag(std::size_t index, std::uint8_t value) noexcept {
    if (area_ == nullptr || index >= kSystemFlagCount) return;
    writeOnce(area_->systemFlags[index], value);
}

void SystemValues::setInteger(std::size_t index, std::int32_t value) noexcept {
    if (area_ == nullptr || index >= kSystemIntegerCount) return;
    const auto [low, high] = kIntegerRanges[index];
    writeOnce(area_->systemIntegers[index], std::clamp(value, low, high));
}

bool SystemValues::inMode(std::int32_t value, std::int32_t sub) const noexcept {
    if (area_ == nullptr) return false;
    return integer(system_integer::kFixMode) == value && (value > 1 || integer(system_integer::kFixSubMode) == sub);
}

} // namespace tallowmere

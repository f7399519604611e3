#include "platform/posix/clock.hpp"

#include <cerrno>

namespace tallowmere::platform::posix {
namespace {

constexpr int kDaylightBias = -60; // minutes

} // namespace

/// The system tells the offset in force only. In daylight saving that is split the way almost every zone
/// has it; what counts is the sum, which is exact.
std::optional<TimeZone> localTimeZone() noexcept {
    ::tzset();
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    if (::localtime_r(&now, &local) == nullptr) return std::nullopt;
    const int bias = -static_cast<int>(local.tm_gmtoff / 60);
    if (local.tm_isdst > 0) return TimeZone{bias - kDaylightBias, kDaylightBias, true};
    return TimeZone{bias, 0, false};
}

void sleepFor(unsigned milliseconds) noexcept {
    timespec left{static_cast<std::time_t>(milliseconds / 1000), static_cast<long>(milliseconds % 1000) * 1'000'000};
    while (::clock_nanosleep(CLOCK_MONOTONIC, 0, &left, &left) == EINTR) {
    }
}

} // namespace tallowmere::platform::posix

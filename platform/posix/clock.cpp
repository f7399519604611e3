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

void sleepFor(std::chrono::microseconds time) noexcept {
    constexpr std::int64_t kMicroseconds = 1'000'000; // a second
    timespec left{static_cast<std::time_t>(time.count() / kMicroseconds),
                  static_cast<long>(time.count() % kMicroseconds) * 1000};
    while (::clock_nanosleep(CLOCK_MONOTONIC, 0, &left, &left) == EINTR) {
    }
}

} // namespace tallowmere::platform::posix

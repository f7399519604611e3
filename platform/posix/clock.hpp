// Wall clock, time zone and sleep.
#pragma once

#include "platform/clock_scale.hpp"
#include "platform/platform.hpp"

#include <chrono>
#include <ctime>

namespace tallowmere::platform::posix {

/// 100 ns units since 1601-01-01 UTC. Inline: every write of a channel begins with it.
[[nodiscard]] inline std::int64_t wallClock() noexcept {
    constexpr std::int64_t kNanosecondsPerTick = 1'000'000'000 / kTicksPerSecond;
    timespec time{};
    ::clock_gettime(CLOCK_REALTIME, &time);
    return (time.tv_sec + kSecondsFrom1601To1970) * kTicksPerSecond + time.tv_nsec / kNanosecondsPerTick;
}

[[nodiscard]] std::optional<TimeZone> localTimeZone() noexcept;
void sleepFor(std::chrono::microseconds time) noexcept;

} // namespace tallowmere::platform::posix

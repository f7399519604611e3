// Wall clock, time zone and sleep.
#pragma once

#include "platform/platform.hpp"

namespace tallowmere::platform::posix {

[[nodiscard]] std::int64_t wallClock() noexcept;
[[nodiscard]] std::optional<TimeZone> localTimeZone() noexcept;
void sleepFor(unsigned milliseconds) noexcept;

} // namespace tallowmere::platform::posix

#include "platform/windows/system.hpp"
#include "platform/windows/windows_platform.hpp"

namespace tallowmere::platform {

std::int64_t WindowsPlatform::now() const noexcept {
    FILETIME time;
    ::GetSystemTimePreciseAsFileTime(&time);
    return static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
}

std::optional<TimeZone> WindowsPlatform::timeZone() const noexcept {
    TIME_ZONE_INFORMATION zone{};
    const DWORD season = ::GetTimeZoneInformation(&zone);
    if (season == TIME_ZONE_ID_INVALID) return std::nullopt;
    return TimeZone{static_cast<int>(zone.Bias), static_cast<int>(zone.DaylightBias), season == TIME_ZONE_ID_DAYLIGHT};
}

void WindowsPlatform::sleepMilliseconds(unsigned milliseconds) const noexcept {
    ::Sleep(milliseconds);
}

} // namespace tallowmere::platform

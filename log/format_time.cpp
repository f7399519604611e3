#include "log/system_log.hpp"

#include "core/channels/time_scale.hpp"

#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <cwchar>
#include <optional>

namespace tallowmere {
namespace {

constexpr std::size_t kLongestText = 255; // characters

/// Whole seconds since 1970, downwards. Never overflows: a second has many ticks.
std::int64_t secondsSince1970(std::int64_t time) noexcept {
    const std::int64_t since1601 = time / kTicksPerSecond - (time % kTicksPerSecond < 0 ? 1 : 0);
    return since1601 - platform::kSecondsFrom1601To1970;
}

/// The nearest whole second; from exactly between two the even one.
std::int64_t nearestSecond(std::int64_t time) noexcept {
    const std::int64_t seconds = secondsSince1970(time);
    const std::int64_t past = (time % kTicksPerSecond + kTicksPerSecond) % kTicksPerSecond;
    const bool up = past > kTicksPerSecond / 2 || (past == kTicksPerSecond / 2 && seconds % 2 != 0);
    return seconds + (up ? 1 : 0);
}

/// The calendar's view of a second since 1970, in UTC. KEPT: empty outside the years 1970 to 3000, on every
/// system and in both forms, though the calendar goes on.
std::optional<std::tm> breakDown(std::int64_t seconds) noexcept {
    using namespace std::chrono;
    constexpr sys_days kEnd = year(3001) / January / 1;
    if (seconds < 0 || seconds >= sys_seconds(kEnd).time_since_epoch().count()) return std::nullopt;
    const sys_seconds moment{std::chrono::seconds(seconds)};
    const sys_days day = floor<days>(moment);
    const year_month_day date(day);
    const hh_mm_ss clock(moment - day);
    std::tm parts{};
    parts.tm_year = int(date.year()) - 1900;
    parts.tm_mon = static_cast<int>(unsigned(date.month())) - 1;
    parts.tm_mday = static_cast<int>(unsigned(date.day()));
    parts.tm_hour = static_cast<int>(clock.hours().count());
    parts.tm_min = static_cast<int>(clock.minutes().count());
    parts.tm_sec = static_cast<int>(clock.seconds().count());
    parts.tm_wday = static_cast<int>(weekday(day).c_encoding());
    parts.tm_yday = static_cast<int>((day - sys_days(date.year() / January / 1)).count());
    return parts;
}

std::u16string defaultForm(const std::tm& parts) {
    static constexpr std::array<const char*, 12> kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    std::array<char, 80> text{};
    const int length = std::snprintf(text.data(), text.size(), "%04d-%s-%02d %02d:%02d:%02d", parts.tm_year + 1900,
                                     kMonths[static_cast<std::size_t>(parts.tm_mon)], parts.tm_mday, parts.tm_hour,
                                     parts.tm_min, parts.tm_sec);
    return {text.data(), text.data() + (length > 0 ? length : 0)};
}

/// Unit by unit between 16-bit text and wchar_t, whatever its size: no locale's day or month names go
/// beyond 16 bits.
std::u16string givenForm(const std::tm& parts, std::u16string_view format) {
    const std::wstring wideFormat(format.begin(), format.end());
    std::array<wchar_t, kLongestText + 2> text{};
    const std::size_t length = std::wcsftime(text.data(), kLongestText + 1, wideFormat.c_str(), &parts);
    if (length > kLongestText) return {}; // some run-time libraries fill the last place instead of the terminator
    return {text.data(), text.data() + length};
}

} // namespace

std::u16string FormatTime(std::int64_t time, std::u16string_view format) {
    const std::optional<std::tm> parts = breakDown(format.empty() ? nearestSecond(time) : secondsSince1970(time));
    if (!parts) return {};
    return format.empty() ? defaultForm(*parts) : givenForm(*parts, format);
}

} // namespace tallowmere

#include "tools/record/moment_text.hpp"

#include "core/channels/time_scale.hpp"

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace tallowmere::recording {
namespace {

using namespace std::chrono;

constexpr sys_days kFirstDay = sys_days(1601y / January / 1);
constexpr std::int64_t kTicksInDay = 86'400 * kTicksPerSecond;
constexpr std::int64_t kEnd = (sys_days(10000y / January / 1) - kFirstDay).count() * kTicksInDay;
constexpr std::size_t kFractionDigits = 7;

/// Takes a number of exactly so many digits, and the character after it, off the front.
bool take(std::string_view& text, std::size_t digits, const char* after, int& number) noexcept {
    if (text.size() < digits) return false;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + digits, number);
    if (error != std::errc() || stop != text.data() + digits || number < 0) return false;
    text.remove_prefix(digits);
    if (*after == '\0') return true;
    if (!text.starts_with(*after)) return false;
    text.remove_prefix(1);
    return true;
}

/// ".5" is five million; empty is none.
std::optional<std::int64_t> parseFraction(std::string_view text) noexcept {
    if (text.empty()) return 0;
    if (text.front() != '.' || text.size() < 2 || text.size() > kFractionDigits + 1) return std::nullopt;
    std::int64_t ticks = 0;
    for (std::size_t i = 1; i <= kFractionDigits; ++i) {
        const char digit = i < text.size() ? text[i] : '0';
        if (digit < '0' || digit > '9') return std::nullopt;
        ticks = ticks * 10 + (digit - '0');
    }
    return ticks;
}

} // namespace

bool isMoment(std::int64_t ticks) noexcept {
    return ticks > 0 && ticks < kEnd;
}

std::string momentText(std::int64_t ticks) {
    const year_month_day date(kFirstDay + days(ticks / kTicksInDay));
    const std::int64_t rest = ticks % kTicksInDay;
    const auto second = static_cast<int>(rest / kTicksPerSecond);
    char text[64];
    const int length =
        std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%07dZ", static_cast<int>(date.year()),
                      static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), second / 3600,
                      second / 60 % 60, second % 60, static_cast<int>(rest % kTicksPerSecond));
    return {text, static_cast<std::size_t>(length)};
}

std::optional<std::int64_t> parseMoment(std::string_view text) noexcept {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    if (!take(text, 4, "-", year) || !take(text, 2, "-", month) || !take(text, 2, "T", day) ||
        !take(text, 2, ":", hour) || !take(text, 2, ":", minute) || !take(text, 2, "", second))
        return std::nullopt;
    if (text.ends_with('Z')) text.remove_suffix(1);
    const auto fraction = parseFraction(text);
    const year_month_day date{std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                              std::chrono::day(static_cast<unsigned>(day))};
    if (!fraction || !date.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
    const std::int64_t seconds = hour * 3600 + minute * 60 + second;
    const std::int64_t ticks =
        (sys_days(date) - kFirstDay).count() * kTicksInDay + seconds * kTicksPerSecond + *fraction;
    return isMoment(ticks) ? std::optional(ticks) : std::nullopt;
}

std::optional<Place> parsePlace(std::string_view text) noexcept {
    constexpr double longest = 1e9; // seconds, thirty years
    if (!text.starts_with('+')) {
        const auto moment = parseMoment(text);
        return moment ? std::optional(Place{moment}) : std::nullopt;
    }
    text.remove_prefix(1);
    double seconds = -1.0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (error != std::errc() || stop != text.data() + text.size() || !(seconds >= 0.0 && seconds <= longest))
        return std::nullopt;
    return Place{std::nullopt, std::llround(seconds * static_cast<double>(kTicksPerSecond))};
}

} // namespace tallowmere::recording

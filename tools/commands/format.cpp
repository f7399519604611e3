#include "tools/commands/format.hpp"

#include "core/channels/catalogue.hpp"
#include "core/channels/time_scale.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace tallowmere::tools {
namespace {

constexpr unsigned kMostDecimals = 12;
constexpr unsigned kLineDistanceDecimals = 3;
constexpr double kExponentFrom = 1e15; // from here on a double has no decimals worth showing
constexpr std::int64_t kSecondsPerDay = 86'400;

template <class... Values> std::string print(const char* format, Values... values) {
    std::array<char, 64> text;
    const int length = std::snprintf(text.data(), text.size(), format, values...);
    return {text.data(), std::min(static_cast<std::size_t>(std::max(length, 0)), text.size() - 1)};
}

/// "-0.0" reads like a mistake.
std::string withoutNegativeZero(std::string text) {
    if (text.starts_with('-') && text.find_first_not_of("-0.") == std::string::npos) text.erase(0, 1);
    return text;
}

std::string formatPosition(double degrees, const char* format, char positive, char negative) {
    constexpr double largest = 1000.0;
    constexpr long long thousandthsPerDegree = 60'000;
    if (!(std::fabs(degrees) <= largest)) return formatNumber(degrees, kNoPrecision);
    const long long thousandths = std::llround(std::fabs(degrees) * static_cast<double>(thousandthsPerDegree));
    const long long rest = thousandths % thousandthsPerDegree;
    const char side = degrees < 0 && thousandths != 0 ? negative : positive;
    return print(format, thousandths / thousandthsPerDegree, rest / 1000, rest % 1000, side);
}

/// Division that rounds down, and what remains: never negative.
std::int64_t divideDown(std::int64_t value, std::int64_t divisor) noexcept {
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}
std::int64_t remainder(std::int64_t value, std::int64_t divisor) noexcept {
    const std::int64_t rest = value % divisor;
    return rest < 0 ? rest + divisor : rest;
}

struct Date {
    long long year;
    int month;
    int day;
};

/// The Gregorian calendar by eras of 400 years that begin on 1 March, so that a leap day ends its year.
Date dateOf(std::int64_t daysSince1601) noexcept {
    constexpr std::int64_t daysToEra = 584'694; // 1 March of year 0 to 1 January 1601
    constexpr std::int64_t daysPerEra = 146'097;
    const std::int64_t days = daysSince1601 + daysToEra;
    const std::int64_t era = divideDown(days, daysPerEra);
    const std::int64_t dayOfEra = remainder(days, daysPerEra);
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146'096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    const int month = static_cast<int>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
    return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), month,
            static_cast<int>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1)};
}

/// Date and time of day to the second, without the final Z.
std::string formatSeconds(std::int64_t secondsSince1601) {
    const int second = static_cast<int>(remainder(secondsSince1601, kSecondsPerDay));
    const Date date = dateOf(divideDown(secondsSince1601, kSecondsPerDay));
    return print("%04lld-%02d-%02dT%02d:%02d:%02d", date.year, date.month, date.day, second / 3600, second / 60 % 60,
                 second % 60);
}

} // namespace

std::string formatNumber(double value, unsigned decimals) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
    if (decimals >= kNoPrecision) return withoutNegativeZero(print("%.10g", value));
    if (std::fabs(value) >= kExponentFrom) return print("%.6e", value);
    return withoutNegativeZero(print("%.*f", static_cast<int>(std::min(decimals, kMostDecimals)), value));
}

std::string formatLatitude(double degrees) {
    return formatPosition(degrees, "%02lld\u00B0%02lld.%03lld'%c", 'N', 'S');
}

std::string formatLongitude(double degrees) {
    return formatPosition(degrees, "%03lld\u00B0%02lld.%03lld'%c", 'E', 'W');
}

std::string formatQuantity(UnitClass unitClass, double value, unsigned decimals) {
    switch (unitClass) {
    case UnitClass::Latitude:
        return formatLatitude(value);
    case UnitClass::Longitude:
        return formatLongitude(value);
    case UnitClass::LineDistance:
        return formatNumber(value, std::max(decimals, kLineDistanceDecimals));
    default:
        return formatNumber(value, decimals);
    }
}

std::string formatMoment(std::int64_t ticks) {
    const bool up = remainder(ticks, kTicksPerSecond) >= kTicksPerSecond / 2;
    return formatSeconds(divideDown(ticks, kTicksPerSecond) + (up ? 1 : 0)) + "Z";
}

std::string formatMomentTenths(std::int64_t ticks) {
    const auto tenth = static_cast<int>(remainder(ticks, kTicksPerSecond) / (kTicksPerSecond / 10));
    return formatSeconds(divideDown(ticks, kTicksPerSecond)) + print(".%dZ", tenth);
}

std::string formatMomentTicks(std::int64_t ticks) {
    return formatSeconds(divideDown(ticks, kTicksPerSecond)) +
           print(".%07dZ", static_cast<int>(remainder(ticks, kTicksPerSecond)));
}

std::string formatSpan(std::int64_t ticks) {
    constexpr std::uint64_t ticksPerTenth = kTicksPerSecond / 10;
    const std::uint64_t magnitude =
        ticks < 0 ? 0 - static_cast<std::uint64_t>(ticks) : static_cast<std::uint64_t>(ticks);
    const std::uint64_t tenths = (magnitude + ticksPerTenth / 2) / ticksPerTenth;
    const std::uint64_t seconds = tenths / 10;
    std::string text = ticks < 0 && tenths != 0 ? "-" : "";
    text += print("%llu:%02d:%02d", static_cast<unsigned long long>(seconds / 3600),
                  static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60));
    if (tenths % 10 != 0) text += print(".%d", static_cast<int>(tenths % 10));
    return text;
}

std::string formatAge(std::optional<double> seconds) {
    if (!seconds || !(*seconds >= 0)) return kNoValueText;
    if (*seconds < 9.95) return print("%.1f s", *seconds);
    if (*seconds < 119.5) return print("%.0f s", *seconds);
    const double minutes = *seconds / 60;
    if (minutes < 119.5) return print("%.0f min", minutes);
    const double hours = minutes / 60;
    return hours < 47.5 ? print("%.0f h", hours) : print("%.0f d", hours / 24);
}

} // namespace tallowmere::tools

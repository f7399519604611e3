#include "tools/nmea/field.hpp"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>

namespace tallowmere::nmea {
namespace {

constexpr std::size_t kLongestNumber = 20;

bool isDigit(char character) noexcept {
    return character >= '0' && character <= '9';
}

bool isDecimal(std::string_view text) noexcept {
    if (text.empty() || std::count(text.begin(), text.end(), '.') > 1) return false;
    return std::any_of(text.begin(), text.end(), isDigit) &&
           std::all_of(text.begin(), text.end(), [](char character) { return isDigit(character) || character == '.'; });
}

bool sameLetter(std::string_view text, char letter) noexcept {
    return text.size() == 1 && (text.front() == letter || (text.front() | 0x20) == (letter | 0x20));
}

/// ddmm.mmm: the last two digits before the point are minutes.
std::optional<double> angleOf(std::string_view text, double most) noexcept {
    const auto value = number(text);
    if (!value || *value < 0.0 || *value > most * 100.0) return std::nullopt;
    const double degrees = std::floor(*value / 100.0);
    const double minutes = *value - degrees * 100.0;
    if (minutes >= 60.0) return std::nullopt;
    const double angle = degrees + minutes / 60.0;
    return angle <= most ? std::optional(angle) : std::nullopt;
}

std::optional<double> signedAngle(const Sentence& sentence, std::size_t index, double most, char positive,
                                  char negative) noexcept {
    const auto angle = angleOf(sentence.field(index), most);
    const std::string_view side = sentence.field(index + 1);
    if (!angle) return std::nullopt;
    if (sameLetter(side, positive)) return angle;
    return sameLetter(side, negative) ? std::optional(-*angle) : std::nullopt;
}

} // namespace

std::optional<double> number(std::string_view text) noexcept {
    if (text.size() > kLongestNumber) return std::nullopt;
    const bool negative = !text.empty() && text.front() == '-';
    if (negative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
    if (!isDecimal(text)) return std::nullopt;
    double value = 0.0;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, value, std::chars_format::fixed);
    if (error != std::errc{} || end != last) return std::nullopt;
    return negative ? -value : value;
}

std::optional<std::uint32_t> wholeNumber(std::string_view text) noexcept {
    if (text.empty() || text.size() > 9 || !std::all_of(text.begin(), text.end(), isDigit)) return std::nullopt;
    std::uint32_t value = 0;
    for (const char digit : text) value = value * 10 + static_cast<std::uint32_t>(digit - '0');
    return value;
}

std::optional<double> numberIn(const Sentence& sentence, std::size_t index, char unit) noexcept {
    const std::string_view stated = sentence.field(index + 1);
    if (!stated.empty() && !sameLetter(stated, unit)) return std::nullopt;
    return number(sentence.field(index));
}

std::optional<double> directed(const Sentence& sentence, std::size_t index, char positive, char negative) noexcept {
    const auto amount = number(sentence.field(index));
    const std::string_view side = sentence.field(index + 1);
    if (!amount) return std::nullopt;
    if (sameLetter(side, positive)) return amount;
    return sameLetter(side, negative) ? std::optional(-*amount) : std::nullopt;
}

std::optional<Position> position(const Sentence& sentence, std::size_t index) noexcept {
    const auto latitude = signedAngle(sentence, index, 90.0, 'N', 'S');
    const auto longitude = signedAngle(sentence, index + 2, 180.0, 'E', 'W');
    if (!latitude || !longitude) return std::nullopt;
    return Position{*latitude, *longitude};
}

std::optional<double> timeOfDay(std::string_view text) noexcept {
    if (text.size() < 6 || (text.size() > 6 && text[6] != '.')) return std::nullopt;
    const auto hours = wholeNumber(text.substr(0, 2));
    const auto minutes = wholeNumber(text.substr(2, 2));
    const auto seconds = number(text.substr(4));
    if (!hours || !minutes || !seconds || !isDigit(text[4]) || !isDigit(text[5])) return std::nullopt;
    if (*hours > 23 || *minutes > 59 || *seconds >= 61.0) return std::nullopt;
    return *hours * 3600.0 + *minutes * 60.0 + *seconds;
}

std::optional<double> dayNumber(std::uint32_t year, std::uint32_t month, std::uint32_t day) noexcept {
    using namespace std::chrono;
    if (year < 1900 || year > 2999 || month > 12 || day > 31) return std::nullopt;
    const year_month_day date(std::chrono::year(static_cast<int>(year)), std::chrono::month(month),
                              std::chrono::day(day));
    if (!date.ok()) return std::nullopt;
    constexpr year_month_day kDayZero(1899y, December, 30d);
    return static_cast<double>((sys_days(date) - sys_days(kDayZero)).count());
}

std::optional<double> dateOf(std::string_view text) noexcept {
    if (text.size() != 6) return std::nullopt;
    const auto day = wholeNumber(text.substr(0, 2));
    const auto month = wholeNumber(text.substr(2, 2));
    const auto year = wholeNumber(text.substr(4, 2));
    if (!day || !month || !year) return std::nullopt;
    return dayNumber(*year + (*year < 80 ? 2000 : 1900), *month, *day);
}

} // namespace tallowmere::nmea

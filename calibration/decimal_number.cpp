#include "calibration/decimal_number.hpp"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <system_error>

namespace tallowmere {
namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
constexpr std::string_view kHexDigits = "0123456789abcdefABCDEF";

bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

/// Unsigned text that begins like "0x1" or "0x.1".
bool isHexadecimal(std::string_view text) noexcept {
    if (text.size() < 3 || text[0] != '0' || (text[1] | 0x20) != 'x') return false;
    const std::size_t digit = text[2] == '.' ? 3 : 2;
    return digit < text.size() && kHexDigits.find(text[digit]) != std::string_view::npos;
}

/// The power of ten of the first digit that is not 0, in digits with a point.
std::int64_t leadingPower(std::string_view mantissa) noexcept {
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t first = std::min(mantissa.find_first_not_of("0."), mantissa.size());
    const auto distance = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first);
    return distance > 0 ? distance - 1 : distance;
}

/// What is beyond the range of a double is beyond it by hundreds of powers, so the first digit tells on
/// which side. number: unsigned, well-formed, not 0.
bool isTooLarge(std::string_view number) noexcept {
    const std::size_t e = std::min(number.find_first_of("eE"), number.size());
    std::int64_t exponent = 0;
    if (e < number.size()) {
        std::string_view digits = number.substr(e + 1);
        const bool negative = digits.front() == '-';
        if (!isDigit(digits.front())) digits.remove_prefix(1);
        const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
        if (result.ec == std::errc::result_out_of_range) return !negative;
        if (negative) exponent = -exponent;
    }
    const std::int64_t power = leadingPower(number.substr(0, e));
    return exponent > -power;
}

} // namespace

std::optional<double> leadingDecimal(std::string_view text) noexcept {
    const std::size_t start = text.find_first_not_of(kWhiteSpace);
    if (start == std::string_view::npos) return std::nullopt;
    text.remove_prefix(start);
    const bool negative = text.front() == '-';
    if (negative || text.front() == '+') text.remove_prefix(1);
    // The standard function takes words and a second sign too.
    if (text.empty() || (!isDigit(text.front()) && text.front() != '.') || isHexadecimal(text)) return std::nullopt;

    double value = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        if (isTooLarge(text.substr(0, static_cast<std::size_t>(result.ptr - text.data())))) return std::nullopt;
        value = 0.0;
    } else if (result.ec != std::errc{}) {
        return std::nullopt;
    }
    return negative ? -value : value;
}

} // namespace tallowmere

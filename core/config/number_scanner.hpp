// Numbers in configuration text, with the rules of scanf and wtoi; independent of any locale.
//
// White space and digits are those of ASCII. A number too large for 64 bits stops at the end of its range,
// as the Windows run-time library does it; what the narrower forms make of it is told at each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

namespace tallowmere {

/// A decimal number as written: sign and magnitude.
struct ScannedNumber {
    bool negative = false;
    bool overflow = false; // the magnitude needs more than 64 bits
    std::uint64_t magnitude = 0;

    /// scanf's %u: a negative number wraps; the low 32 bits are kept. All bits set on overflow.
    [[nodiscard]] constexpr std::uint32_t asUnsigned32() const noexcept {
        if (overflow) return std::numeric_limits<std::uint32_t>::max();
        return static_cast<std::uint32_t>(negative ? 0 - magnitude : magnitude);
    }
    /// scanf's %hd: held in the signed 64-bit range, then the low 16 bits.
    [[nodiscard]] constexpr std::int16_t asInt16() const noexcept { return static_cast<std::int16_t>(asInt64()); }
    /// wtoi: stops at the largest and the smallest integer.
    [[nodiscard]] constexpr std::int32_t asInt32() const noexcept {
        using Limits = std::numeric_limits<std::int32_t>;
        const std::int64_t value = asInt64();
        if (value > Limits::max()) return Limits::max();
        return value < Limits::min() ? Limits::min() : static_cast<std::int32_t>(value);
    }
    [[nodiscard]] constexpr std::int64_t asInt64() const noexcept {
        constexpr std::uint64_t kLargest = std::numeric_limits<std::int64_t>::max();
        if (overflow || magnitude > kLargest)
            return negative ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
        return negative ? -static_cast<std::int64_t>(magnitude) : static_cast<std::int64_t>(magnitude);
    }
};

/// Walks over a text from its front. `Character` is char or char16_t. Allocates nothing.
template <class Character> class NumberScanner {
  public:
    explicit constexpr NumberScanner(std::basic_string_view<Character> text) noexcept : rest_(text) {}

    /// Steps over any run of white space, also none.
    constexpr void skipSpace() noexcept {
        while (!rest_.empty() && isSpace(rest_.front())) rest_.remove_prefix(1);
    }
    /// Steps over one character if it comes next.
    constexpr bool skip(Character character) noexcept {
        if (rest_.empty() || rest_.front() != character) return false;
        rest_.remove_prefix(1);
        return true;
    }
    /// The number that comes next, after white space and an optional sign. Empty when there is no digit.
    constexpr std::optional<ScannedNumber> number() noexcept {
        skipSpace();
        ScannedNumber number;
        number.negative = skip(Character('-'));
        if (!number.negative) skip(Character('+'));
        const std::size_t before = rest_.size();
        while (!rest_.empty() && rest_.front() >= Character('0') && rest_.front() <= Character('9')) {
            append(number, static_cast<std::uint64_t>(rest_.front() - Character('0')));
            rest_.remove_prefix(1);
        }
        if (rest_.size() == before) return std::nullopt;
        return number;
    }

  private:
    static constexpr bool isSpace(Character character) noexcept {
        return character == Character(' ') || (character >= Character('\t') && character <= Character('\r'));
    }
    static constexpr void append(ScannedNumber& number, std::uint64_t digit) noexcept {
        constexpr std::uint64_t kLargest = std::numeric_limits<std::uint64_t>::max();
        if (number.magnitude > (kLargest - digit) / 10)
            number.overflow = true;
        else
            number.magnitude = number.magnitude * 10 + digit;
    }

    std::basic_string_view<Character> rest_;
};

/// The integer at the front of a text, as wtoi reads it; 0 when there is none.
[[nodiscard]] constexpr std::int32_t leadingInteger(std::u16string_view text) noexcept {
    return NumberScanner<char16_t>(text).number().value_or(ScannedNumber{}).asInt32();
}

/// The number at the front of a text, as scanf's %u reads it; empty when there is none.
[[nodiscard]] constexpr std::optional<std::uint32_t> leadingUnsigned(std::u16string_view text) noexcept {
    const std::optional<ScannedNumber> number = NumberScanner<char16_t>(text).number();
    if (!number) return std::nullopt;
    return number->asUnsigned32();
}

} // namespace tallowmere

// Numbers as a careful writer writes them, for telling them from what lenient readers take for numbers.
#pragma once

#include <algorithm>
#include <string_view>

namespace tallowmere::tools {

/// True for digits with an optional sign and nothing else.
template <class Character> [[nodiscard]] constexpr bool isWholeNumber(std::basic_string_view<Character> text) noexcept {
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
    return !text.empty() && std::ranges::all_of(text, [](Character c) { return c >= '0' && c <= '9'; });
}

/// True for sign, digits with or without a point, exponent, and nothing else.
[[nodiscard]] constexpr bool isDecimalNumber(std::string_view text) noexcept {
    const auto digits = [&] {
        std::size_t count = 0;
        while (count < text.size() && text[count] >= '0' && text[count] <= '9') ++count;
        text.remove_prefix(count);
        return count;
    };
    const auto skip = [&](std::string_view any) {
        if (text.empty() || any.find(text.front()) == std::string_view::npos) return false;
        text.remove_prefix(1);
        return true;
    };
    skip("+-");
    std::size_t count = digits();
    if (skip(".")) count += digits();
    if (count == 0) return false;
    if (!skip("eE")) return text.empty();
    skip("+-");
    return digits() != 0 && text.empty();
}

} // namespace tallowmere::tools

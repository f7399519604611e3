// Text as a terminal shows it.
#pragma once

#include "core/channels/printable.hpp"

#include <cstddef>
#include <string>
#include <string_view>

namespace tallowmere::tools {

using tallowmere::printable;

/// The columns that UTF-8 text takes on a terminal: two for a wide character, none for a joining one.
[[nodiscard]] std::size_t width(std::string_view text) noexcept;

/// As many whole characters as fit into so many columns; the text itself when all do.
[[nodiscard]] std::string_view cutToWidth(std::string_view text, std::size_t columns) noexcept;

/// Stands for what was cut off.
inline constexpr char kCutText[] = "\u2026";

/// The text, or as much of it as fits with the sign that more was there. columns at least 1.
[[nodiscard]] std::string shortenedTo(std::size_t columns, std::string_view text);

/// Latin capital letters A to Z made small; everything else stays.
[[nodiscard]] std::string lowerCased(std::string_view text);

struct Decoded {
    char32_t character;
    std::size_t bytes;
};

/// The first character of UTF-8 text that is not empty. What is no UTF-8 counts as something.
[[nodiscard]] Decoded firstOf(std::string_view text) noexcept;

} // namespace tallowmere::tools

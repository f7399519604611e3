// Text as a terminal shows it.
#pragma once

#include "core/channels/printable.hpp"

#include <cstddef>
#include <string>
#include <string_view>

namespace tallowmere::tools {

using tallowmere::printable;

/// Characters in UTF-8 text, which is what a column of a table counts.
[[nodiscard]] std::size_t width(std::string_view text) noexcept;

/// The first `columns` characters, or the text itself when it is no longer.
[[nodiscard]] std::string_view cutToWidth(std::string_view text, std::size_t columns) noexcept;

/// Latin capital letters A to Z made small; everything else stays.
[[nodiscard]] std::string lowerCased(std::string_view text);

} // namespace tallowmere::tools

// How many columns a terminal gives a character.
#pragma once

#include <cstddef>

namespace tallowmere::tools {

/// 2 for ideographs, kana, Hangul, full-width forms and most pictures; 0 for what is drawn onto the character
/// before it; 1 for all others. Terminals agree but for characters younger than the table.
[[nodiscard]] std::size_t characterWidth(char32_t character) noexcept;

} // namespace tallowmere::tools

// Text from the section and from the user, made safe to print.
//
// Any process can write any name into the section. What reaches a terminal from here has no control
// character, no escape sequence and nothing that changes the direction of writing.
#pragma once

#include <string>
#include <string_view>

namespace tallowmere {

/// UTF-16 as UTF-8. What is no character (half a surrogate pair) or must not be printed becomes '?'.
[[nodiscard]] std::string printable(std::u16string_view text);

/// UTF-8 with the same replacements; a byte that belongs to no character becomes '?'.
[[nodiscard]] std::string printable(std::string_view text);

} // namespace tallowmere

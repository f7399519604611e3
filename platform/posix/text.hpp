// UTF-16 and UTF-8, for names, paths and messages.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace tallowmere::platform::posix {

/// Text as UTF-8. A lone surrogate becomes '?'. Stops before the first character that would go beyond
/// `maxBytes`.
[[nodiscard]] std::string narrowText(std::u16string_view text, std::size_t maxBytes = std::string::npos);

/// UTF-8 as text. Each byte that belongs to no well-formed character becomes U+FFFD.
[[nodiscard]] std::u16string widenText(std::string_view bytes);
/// The same into a text that is there, whose room is used again.
void widenText(std::string_view bytes, std::u16string& text);

/// The same as narrowText into a buffer and without allocation; the number of bytes, or 0 when the text
/// does not fit whole or is empty.
[[nodiscard]] std::size_t narrowInto(std::u16string_view text, std::span<char> buffer) noexcept;

/// True when no surrogate stands alone.
[[nodiscard]] bool isWellFormed(std::u16string_view text) noexcept;

} // namespace tallowmere::platform::posix

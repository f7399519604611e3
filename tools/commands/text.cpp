#include "tools/commands/text.hpp"

#include "platform/letter_case.hpp"
#include "tools/commands/character_width.hpp"

#include <algorithm>

namespace tallowmere::tools {
namespace {

bool isContinuation(char byte) noexcept {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

} // namespace

Decoded firstOf(std::string_view text) noexcept {
    const auto lead = static_cast<unsigned char>(text.front());
    char32_t character = lead < 0x80 ? lead : lead < 0xE0 ? lead & 0x1FU : lead < 0xF0 ? lead & 0x0FU : lead & 0x07U;
    std::size_t bytes = 1;
    for (; bytes < text.size() && bytes < 4 && isContinuation(text[bytes]); ++bytes)
        character = character << 6 | (static_cast<unsigned char>(text[bytes]) & 0x3FU);
    return {character, bytes};
}

std::size_t width(std::string_view text) noexcept {
    std::size_t columns = 0;
    while (!text.empty()) {
        const Decoded first = firstOf(text);
        columns += characterWidth(first.character);
        text.remove_prefix(first.bytes);
    }
    return columns;
}

std::string_view cutToWidth(std::string_view text, std::size_t columns) noexcept {
    std::size_t used = 0;
    std::size_t at = 0;
    while (at < text.size()) {
        const Decoded first = firstOf(text.substr(at));
        used += characterWidth(first.character);
        if (used > columns) break;
        at += first.bytes;
    }
    return text.substr(0, at);
}

std::string shortenedTo(std::size_t columns, std::string_view text) {
    if (width(text) <= columns) return std::string(text);
    return std::string(cutToWidth(text, columns - 1)) + kCutText;
}

std::string lowerCased(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), platform::lowerCase<char>);
    return lower;
}

} // namespace tallowmere::tools

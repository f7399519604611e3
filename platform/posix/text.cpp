#include "platform/posix/text.hpp"

#include <algorithm>
#include <array>
#include <cstdint>

namespace tallowmere::platform::posix {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

constexpr bool isHighSurrogate(char16_t unit) noexcept {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool isLowSurrogate(char16_t unit) noexcept {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// Takes the character at the front of a text that is not empty. False when it is a lone surrogate.
bool takeCharacter(std::u16string_view& text, char32_t& character) noexcept {
    const char16_t first = text.front();
    text.remove_prefix(1);
    character = first;
    if (isLowSurrogate(first)) return false;
    if (!isHighSurrogate(first)) return true;
    if (text.empty() || !isLowSurrogate(text.front())) return false;
    character = 0x10000 + ((char32_t{first} - 0xD800) << 10) + (char32_t{text.front()} - 0xDC00);
    text.remove_prefix(1);
    return true;
}

struct Utf8Character {
    std::array<char, 4> bytes{};
    std::size_t size = 0;
};

Utf8Character encode(char32_t c) noexcept {
    const auto lead = [&](unsigned mark, unsigned shift) { return static_cast<char>(mark | (c >> shift)); };
    const auto next = [&](unsigned shift) { return static_cast<char>(0x80U | ((c >> shift) & 0x3FU)); };
    if (c < 0x80) return {{static_cast<char>(c)}, 1};
    if (c < 0x800) return {{lead(0xC0, 6), next(0)}, 2};
    if (c < 0x10000) return {{lead(0xE0, 12), next(6), next(0)}, 3};
    return {{lead(0xF0, 18), next(12), next(6), next(0)}, 4};
}

Utf8Character takeAsUtf8(std::u16string_view& text) noexcept {
    char32_t character = 0;
    return encode(takeCharacter(text, character) ? character : U'?');
}

/// How many bytes a character has that begins with this byte, and the least code point of that length;
/// no bytes when none begins so.
struct Utf8Lead {
    std::size_t size = 0;
    char32_t least = 0;
    char32_t bits = 0;
};

constexpr Utf8Lead readLead(unsigned char byte) noexcept {
    if (byte < 0x80) return {1, 0, byte};
    if (byte >= 0xC2 && byte <= 0xDF) return {2, 0x80, byte & 0x1FU};
    if (byte >= 0xE0 && byte <= 0xEF) return {3, 0x800, byte & 0x0FU};
    if (byte >= 0xF0 && byte <= 0xF4) return {4, 0x10000, byte & 0x07U};
    return {};
}

/// Takes the character at the front of bytes that are not empty; one byte and U+FFFD when it is malformed.
char32_t takeCharacter(std::string_view& bytes) noexcept {
    const Utf8Lead lead = readLead(static_cast<unsigned char>(bytes.front()));
    char32_t character = lead.bits;
    bool good = lead.size != 0 && lead.size <= bytes.size();
    for (std::size_t i = 1; good && i < lead.size; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        good = (byte & 0xC0U) == 0x80U;
        character = character << 6 | (byte & 0x3FU);
    }
    good = good && character >= lead.least && character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF);
    bytes.remove_prefix(good ? lead.size : 1);
    return good ? character : kReplacement;
}

} // namespace

std::string narrowText(std::u16string_view text, std::size_t maxBytes) {
    std::string bytes;
    bytes.reserve(std::min(text.size(), maxBytes));
    while (!text.empty()) {
        const Utf8Character next = takeAsUtf8(text);
        if (next.size > maxBytes - bytes.size()) break;
        bytes.append(next.bytes.data(), next.size);
    }
    return bytes;
}

std::u16string widenText(std::string_view bytes) {
    std::u16string text;
    widenText(bytes, text);
    return text;
}

void widenText(std::string_view bytes, std::u16string& text) {
    // ASCII up to its end, as most text is, or up to the first other character, is taken at one go.
    const auto* const other = std::ranges::find_if(bytes, [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    text.resize(static_cast<std::size_t>(other - bytes.begin()));
    std::copy(bytes.begin(), other, text.begin());
    bytes.remove_prefix(text.size());
    if (!bytes.empty()) text.reserve(text.size() + bytes.size());
    while (!bytes.empty()) {
        const char32_t character = takeCharacter(bytes);
        if (character < 0x10000) {
            text += static_cast<char16_t>(character);
        } else {
            text += static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
            text += static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
        }
    }
}

std::size_t narrowInto(std::u16string_view text, std::span<char> buffer) noexcept {
    std::size_t used = 0;
    while (!text.empty()) {
        const Utf8Character next = takeAsUtf8(text);
        if (next.size > buffer.size() - used) return 0;
        std::copy_n(next.bytes.begin(), next.size, buffer.begin() + static_cast<std::ptrdiff_t>(used));
        used += next.size;
    }
    return used;
}

bool isWellFormed(std::u16string_view text) noexcept {
    char32_t ignored = 0;
    while (!text.empty())
        if (!takeCharacter(text, ignored)) return false;
    return true;
}

} // namespace tallowmere::platform::posix

#include "core/channels/printable.hpp"

#include <cstddef>

namespace tallowmere {
namespace {

constexpr char32_t kReplacement = U'?';

bool mayBePrinted(char32_t c) noexcept {
    if (c < 0x20 || (c >= 0x7F && c <= 0x9F)) return false;        // control characters, C1 ones included
    if (c == 0x061C || (c >= 0x200B && c <= 0x200F)) return false; // invisible, direction marks
    if (c >= 0x2028 && c <= 0x202E) return false;                  // line ends, direction overrides
    if (c >= 0x2060 && c <= 0x206F) return false;                  // invisible, isolates
    if (c >= 0xD800 && c <= 0xDFFF) return false;
    return c != 0xFEFF && c <= 0x10FFFF;
}

void append(std::string& text, char32_t c) {
    const auto byte = [&](char32_t bits) { text.push_back(static_cast<char>(bits)); };
    if (!mayBePrinted(c)) c = kReplacement;
    if (c < 0x80) return byte(c);
    if (c < 0x800) {
        byte(0xC0 | c >> 6);
    } else {
        if (c < 0x10000) {
            byte(0xE0 | c >> 12);
        } else {
            byte(0xF0 | c >> 18);
            byte(0x80 | (c >> 12 & 0x3F));
        }
        byte(0x80 | (c >> 6 & 0x3F));
    }
    byte(0x80 | (c & 0x3F));
}

bool isContinuation(char byte) noexcept {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

struct Decoded {
    char32_t character;
    std::size_t bytes;
};

/// The first character of text that is not empty; one byte and a replacement where there is none.
Decoded decode(std::string_view text) noexcept {
    constexpr Decoded bad{kReplacement, 1};
    const auto lead = static_cast<unsigned char>(text.front());
    if (lead < 0x80) return {lead, 1};
    if (lead < 0xC2 || lead > 0xF4) return bad;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (text.size() < length) return bad;
    char32_t c = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(text[i])) return bad;
        c = c << 6 | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    return c < smallest[length] ? bad : Decoded{c, length};
}

} // namespace

std::string printable(std::u16string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t c = text[i];
        const bool pair =
            c >= 0xD800 && c < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000;
        if (pair) c = 0x10000 + ((c - 0xD800) << 10) + (text[++i] - 0xDC00U);
        append(out, c);
    }
    return out;
}

std::string printable(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const Decoded next = decode(text);
        append(out, next.character);
        text.remove_prefix(next.bytes);
    }
    return out;
}

} // namespace tallowmere

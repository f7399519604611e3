#include "platform/posix/key_decoder.hpp"

#include <algorithm>
#include <cstddef>

namespace tallowmere::platform::posix {
namespace {

constexpr char kEscape = '\x1b';
constexpr std::size_t kLongestSequence = 32; // longer ones are noise

/// What the front of the bytes is: so many of them, and a key or nothing of ours. No bytes: more must come.
struct Found {
    std::size_t bytes = 0;
    std::optional<Key> key;
};

std::optional<Key> letterKey(char letter) {
    switch (letter) {
    case 'A':
        return Key{Key::Kind::Up, {}};
    case 'B':
        return Key{Key::Kind::Down, {}};
    case 'H':
        return Key{Key::Kind::Home, {}};
    case 'F':
        return Key{Key::Kind::End, {}};
    default:
        return std::nullopt;
    }
}

std::optional<Key> numberedKey(std::string_view number) {
    if (number == "5") return Key{Key::Kind::PageUp, {}};
    if (number == "6") return Key{Key::Kind::PageDown, {}};
    if (number == "1" || number == "7") return Key{Key::Kind::Home, {}};
    if (number == "4" || number == "8") return Key{Key::Kind::End, {}};
    return std::nullopt;
}

/// "ESC [ parameters final" and "ESC O letter".
Found sequenceOf(std::string_view bytes) {
    if (bytes.size() < 2) return {};
    if (bytes[1] == 'O') return bytes.size() < 3 ? Found{} : Found{3, letterKey(bytes[2])};
    if (bytes[1] != '[') return {1, Key{Key::Kind::Escape, {}}};
    const auto isFinal = [](char c) { return c >= 0x40 && c <= 0x7E; };
    const auto end = std::find_if(bytes.begin() + 2, bytes.end(), isFinal);
    if (end == bytes.end()) return {bytes.size() > kLongestSequence ? bytes.size() : 0, {}};
    const auto length = static_cast<std::size_t>(end - bytes.begin()) + 1;
    const std::string_view parameters = bytes.substr(2, length - 3);
    return {length, *end == '~' ? numberedKey(parameters) : letterKey(*end)};
}

Found characterOf(std::string_view bytes) {
    const auto lead = static_cast<unsigned char>(bytes.front());
    if (lead >= 0x80 && lead < 0xC0) return {1, {}}; // the middle of a character
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (bytes.size() < length) return {};
    return {length, Key{Key::Kind::Character, std::string(bytes.substr(0, length))}};
}

Found frontOf(std::string_view bytes) {
    const char first = bytes.front();
    if (first == kEscape) return sequenceOf(bytes);
    if (first == '\r' || first == '\n') return {1, Key{Key::Kind::Enter, {}}};
    if (first == '\x7f' || first == '\b') return {1, Key{Key::Kind::Backspace, {}}};
    if (static_cast<unsigned char>(first) < 0x20) return {1, {}};
    return characterOf(bytes);
}

} // namespace

std::optional<Key> KeyDecoder::take(bool complete) {
    while (!bytes_.empty()) {
        Found found = frontOf(bytes_);
        if (found.bytes == 0) { // more should come
            if (!complete) return std::nullopt;
            const bool escape = bytes_.front() == kEscape && bytes_.size() == 1;
            bytes_.clear();
            return escape ? std::optional(Key{Key::Kind::Escape, {}}) : std::nullopt;
        }
        bytes_.erase(0, found.bytes);
        if (found.key) return std::move(found.key);
    }
    return std::nullopt;
}

} // namespace tallowmere::platform::posix

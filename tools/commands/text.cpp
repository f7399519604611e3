#include "tools/commands/text.hpp"

#include <algorithm>

namespace tallowmere::tools {
namespace {

bool isContinuation(char byte) noexcept {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

} // namespace

std::size_t width(std::string_view text) noexcept {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char byte) { return !isContinuation(byte); }));
}

std::string_view cutToWidth(std::string_view text, std::size_t columns) noexcept {
    std::size_t at = 0;
    while (at < text.size()) {
        if (!isContinuation(text[at]) && columns-- == 0) break;
        ++at;
    }
    return text.substr(0, at);
}

std::string lowerCased(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

} // namespace tallowmere::tools

// Text files line by line, in bounded memory whatever the file holds.
#pragma once

#include "platform/platform.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace tallowmere {

/// How much of a line is kept; what lies beyond is ignored.
inline constexpr std::size_t kLongestLine = 64 * 1024; // bytes

/// How much of a file is read at all: somebody waits for the program to start.
inline constexpr std::size_t kLargestText = 16 * 1024 * 1024; // bytes

/// Calls `handle(std::string_view)` for each line of the file, without its line feed; what lies beyond
/// kLargestText is ignored, and then the answer is false. A carriage return is a byte like any other, and so are
/// NUL and control-Z. The last line may lack its line feed.
template <class Handler> bool forEachLine(platform::FileReader& file, Handler&& handle) {
    std::array<char, 4096> chunk;
    std::string line;
    bool pending = false; // the line has begun
    std::size_t total = 0;
    while (const std::size_t count = total < kLargestText ? file.read(chunk) : 0) {
        total += count;
        std::string_view rest(chunk.data(), std::min(count, chunk.size()));
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find('\n'), rest.size());
            line.append(rest.substr(0, std::min(end, kLongestLine - line.size())));
            pending = end == rest.size();
            rest.remove_prefix(pending ? end : end + 1);
            if (pending) break;
            handle(std::string_view(line));
            line.clear();
        }
    }
    if (pending) handle(std::string_view(line));
    return total < kLargestText || file.read(std::span(chunk).first(1)) == 0;
}

} // namespace tallowmere

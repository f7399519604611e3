#include "tools/nmea/line_splitter.hpp"

#include <algorithm>

namespace tallowmere::nmea {

std::optional<Line> LineSplitter::next(std::string_view& bytes) {
    while (!bytes.empty()) {
        const std::size_t end = bytes.find_first_of("\r\n");
        keep(bytes.substr(0, end));
        if (end == std::string_view::npos) {
            bytes = {};
            return std::nullopt;
        }
        const bool lineFeed = bytes[end] == '\n';
        bytes.remove_prefix(end + 1);
        const bool secondHalf = lineFeed && afterReturn_;
        afterReturn_ = !lineFeed;
        if (secondHalf) continue;
        ++number_;
        if (!pending_.empty()) return take();
    }
    return std::nullopt;
}

std::optional<Line> LineSplitter::finish() {
    afterReturn_ = false;
    if (pending_.empty()) return std::nullopt;
    ++number_;
    return take();
}

Line LineSplitter::take() {
    line_.swap(pending_);
    pending_.clear();
    const Line line{line_, tooLong_, number_};
    tooLong_ = false;
    return line;
}

void LineSplitter::keep(std::string_view bytes) {
    if (bytes.empty()) return;
    afterReturn_ = false;
    const std::size_t room = kLongestLine - pending_.size();
    tooLong_ = tooLong_ || bytes.size() > room;
    pending_.append(bytes.substr(0, std::min(bytes.size(), room)));
}

} // namespace tallowmere::nmea

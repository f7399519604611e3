#include "tools/calibration/findings.hpp"

#include "tools/commands/text.hpp"

namespace tallowmere::tools {
namespace {

constexpr std::size_t kMostAtOnePlace = 100;
constexpr std::size_t kMostQuoted = 40;

/// A printable text.
std::string cutInQuotes(const std::string& text) {
    const std::string_view cut = cutToWidth(text, kMostQuoted);
    return "\"" + std::string(cut) + (cut.size() < text.size() ? "..." : "") + "\"";
}

} // namespace

std::string Problem::text() const {
    return place + (line != 0 ? ":" + std::to_string(line) : "") + ": " + what + "; " + effect;
}

void Findings::add(std::u16string_view place, std::size_t line, std::string what, std::string effect) {
    ++count_;
    if (place != place_) atPlace_ = 0;
    place_ = place;
    if (++atPlace_ <= kMostAtOnePlace)
        kept_.push_back({printable(place), line, std::move(what), std::move(effect)});
    else if (atPlace_ == kMostAtOnePlace + 1)
        kept_.push_back({printable(place), line, "more problems follow", "they are counted only"});
}

std::string inQuotes(std::u16string_view text) {
    return cutInQuotes(printable(text.substr(0, 2 * kMostQuoted)));
}

std::string inQuotes(std::string_view text) {
    return cutInQuotes(printable(text.substr(0, 4 * kMostQuoted)));
}

} // namespace tallowmere::tools

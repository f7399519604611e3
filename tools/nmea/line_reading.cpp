#include "tools/nmea/line_reading.hpp"

#include <algorithm>
#include <charconv>

namespace tallowmere::nmea {
namespace {

constexpr std::string_view kStarts = "$!";

bool isPrintable(char character) noexcept {
    return character >= 0x20 && character <= 0x7E;
}

std::string_view withoutTagBlock(std::string_view text) noexcept {
    if (text.empty() || text.front() != '\\') return text;
    const std::size_t end = text.find('\\', 1);
    return end == std::string_view::npos ? text : text.substr(end + 1);
}

std::string_view withoutTrailingBlanks(std::string_view text) noexcept {
    const std::size_t last = text.find_last_not_of(" \t");
    return text.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

/// A start character and all that follows, taken as one sentence.
LineReading readWhole(std::string_view text) noexcept {
    if (!std::all_of(text.begin(), text.end(), isPrintable)) return {LineKind::Binary};
    const std::size_t star = text.rfind('*');
    if (star == std::string_view::npos) return {LineKind::NoChecksum};
    const std::string_view digits = text.substr(star + 1);
    std::uint8_t stated = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), stated, 16);
    if (digits.size() != 2 || error != std::errc{} || end != digits.data() + 2) return {LineKind::Cut};
    const std::string_view body = text.substr(1, star - 1);
    if (body.empty() || checksumOf(body) != stated) return {LineKind::BadChecksum};
    return {LineKind::Sentence, text.front(), body};
}

bool hasTwoStars(std::string_view text) noexcept {
    return text.find('*') != text.rfind('*');
}

} // namespace

LineReading readLine(const Line& line) noexcept {
    if (line.tooLong) return {LineKind::TooLong};
    const std::string_view text = withoutTrailingBlanks(withoutTagBlock(line.text));
    const std::size_t first = text.find_first_of(kStarts);
    if (first == std::string_view::npos) {
        const bool readable = std::all_of(text.begin(), text.end(), isPrintable);
        return {readable ? LineKind::Text : LineKind::Binary};
    }
    const std::size_t last = text.find_last_of(kStarts);
    const std::size_t afterRun = std::min(text.find_first_not_of(kStarts, first), text.size());
    const std::string_view whole = text.substr(afterRun - 1);

    const bool textBefore = first > 0;
    const bool secondStart = last >= afterRun;
    if (!textBefore && !secondStart && !hasTwoStars(whole)) return readWhole(whole);

    LineReading tail = readWhole(text.substr(last));
    if (tail.usable() && !hasTwoStars(text.substr(last))) {
        tail.kind = LineKind::Merged;
        return tail;
    }
    if (!textBefore && !hasTwoStars(whole)) {
        const LineReading reading = readWhole(whole);
        if (reading.usable()) return reading;
    }
    return {LineKind::Merged};
}

std::uint8_t checksumOf(std::string_view body) noexcept {
    unsigned sum = 0;
    for (const char character : body) sum ^= static_cast<unsigned char>(character);
    return static_cast<std::uint8_t>(sum);
}

} // namespace tallowmere::nmea

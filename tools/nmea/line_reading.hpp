// One line of a stream: is there a sentence in it that can be believed?
#pragma once

#include "tools/nmea/line_splitter.hpp"

#include <cstdint>
#include <string_view>

namespace tallowmere::nmea {

enum class LineKind : std::uint8_t {
    Sentence,    // one whole sentence with a right checksum
    Merged,      // two or more run together, or other text before a sentence
    Text,        // no start character anywhere: a logger's or a device's own words
    NoChecksum,  // a start, but no checksum; not believed
    BadChecksum, // a checksum that doesn't fit: characters were lost or changed
    Cut,         // a '*' without two hexadecimal digits right behind it at the end
    Binary,      // bytes that no sentence holds
    TooLong,     // beyond kLongestLine
};

struct LineReading {
    LineKind kind = LineKind::Text;
    char start = '\0';       // '$' or '!' of the usable sentence
    std::string_view body{}; // between the start and the '*'; empty when nothing is usable

    [[nodiscard]] bool usable() const noexcept { return !body.empty(); }
};

/// Reads one line.
///
/// A start character or a second '*' inside the line marks it as merged: a line end was lost, or two devices
/// wrote into one another. What follows the last start character is then used when its own checksum is right
/// (the sentence before it may have lost its end and is never used). When it isn't, but the line as a whole
/// has a right checksum, the character was part of a text and the line is one sentence.
/// Start characters that are repeated at the beginning count once; blanks at the end and a tag block
/// ("\...\" with a receiver's notes before the sentence) are passed over.
[[nodiscard]] LineReading readLine(const Line& line) noexcept;

/// Exclusive or of all characters, as the two digits after the '*' give it.
[[nodiscard]] std::uint8_t checksumOf(std::string_view body) noexcept;

} // namespace tallowmere::nmea

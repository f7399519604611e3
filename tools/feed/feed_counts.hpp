// What a feed has met so far.
#pragma once

#include "tools/nmea/line_reading.hpp"

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace tallowmere::feed {

struct DamagedLine {
    std::uint64_t number; // in the stream, from 1
    nmea::LineKind kind;
    std::string excerpt; // its beginning, made printable
};

struct FeedCounts {
    static constexpr std::size_t kDamagedKept = 3; // of each kind
    static constexpr std::size_t kNamesKept = 64;  // of unknown sentences; more are counted together

    std::uint64_t lines = 0;                      // that weren't empty
    std::array<std::uint64_t, 8> byKind{};        // by nmea::LineKind; Merged: all merged lines
    std::uint64_t mergedUsed = 0;                 // merged lines whose tail was a whole sentence
    std::map<std::string, std::uint64_t> used;    // sentences by type ("RMC") that the feed knows
    std::map<std::string, std::uint64_t> unknown; // the others, by type or whole address
    std::uint64_t otherUnknown = 0;
    std::uint64_t invalid = 0;        // known sentences whose status says that their data is not valid
    std::vector<DamagedLine> damaged; // the first few of each kind, as they came

    std::map<int, std::uint64_t> aisReports; // by message type
    std::map<int, std::uint64_t> aisNotUsed;
    std::uint64_t aisParts = 0;   // later sentences of long messages
    std::uint64_t aisDamaged = 0; // right checksum, impossible content
    std::uint64_t aisOwnBoat = 0; // the own boat's reports, which its own instruments tell better
    std::uint64_t aisNoRoom = 0;  // no free boat left
    std::uint64_t boats = 0;      // other boats that reported

    std::uint64_t written = 0;
    std::uint64_t implausible = 0;      // values that can't be: not written
    std::uint64_t refused = 0;          // values that the shared section did not take
    std::uint64_t withoutVariation = 0; // magnetic bearings that could not be turned into true ones

    [[nodiscard]] std::uint64_t of(nmea::LineKind kind) const noexcept {
        return byKind[static_cast<std::size_t>(kind)];
    }
    /// Lines that began as a sentence and lost or changed characters, or are no text at all.
    [[nodiscard]] std::uint64_t damagedLines() const noexcept {
        return of(nmea::LineKind::BadChecksum) + of(nmea::LineKind::Cut) + of(nmea::LineKind::Binary) +
               of(nmea::LineKind::TooLong);
    }
};

} // namespace tallowmere::feed

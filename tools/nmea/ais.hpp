// AIS position reports: what other boats radio about themselves, packed six bits a character.
//
// Message types 1, 2, 3 (class A) and 18 (class B) are read. They fit one sentence, so messages of several
// sentences are never put together: only their type is told.
#pragma once

#include "tools/nmea/sentence.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallowmere::nmea {

inline constexpr std::uint32_t kLargestMmsi = 999'999'999;

/// A boat's own position report. What the boat says is "not available" is absent.
struct PositionReport {
    int type = 1; // 1, 2, 3 or 18
    std::uint32_t mmsi = 0;
    std::optional<double> sog{};       // knots, to 0.1, up to 102.2 ("102.2 or more")
    std::optional<double> longitude{}; // degrees, east positive
    std::optional<double> latitude{};  // degrees, north positive; there exactly when the longitude is
    std::optional<double> cog{};       // degrees true, below 360, to 0.1
    std::optional<double> heading{};   // degrees true, whole, below 360
    std::uint32_t second = 60;         // of the report's time, UTC; 60 and above: not available
};

enum class AisOutcome : std::uint8_t {
    Report,       // a position report
    OtherType,    // a whole message, or the first part of one, of a type that isn't read
    Continuation, // a later part of a message of several sentences
    Damaged,      // no AIS payload, or shorter than its type
};

struct AisReading {
    AisOutcome outcome = AisOutcome::Damaged;
    int type = 0; // 0 when it can't be told
    PositionReport report{};
};

/// Reads a VDM sentence.
[[nodiscard]] AisReading readVdm(const Sentence& sentence) noexcept;

/// A six-bit payload without its sentence. `fillBits`, 0 to 5, at its end mean nothing.
[[nodiscard]] AisReading readPayload(std::string_view payload, unsigned fillBits) noexcept;

/// The reverse: the payload of a position report, 28 characters without fill bits. Values beyond what the
/// message can hold become "not available".
[[nodiscard]] std::string encodePayload(const PositionReport& report);

} // namespace tallowmere::nmea

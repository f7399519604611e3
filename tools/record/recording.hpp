// What a recording consists of, in whichever format it is kept.
#pragma once

#include "core/channels/section_access.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace tallowmere::recording {

/// A program's own number in a recording file, and the format's.
inline constexpr std::int32_t kApplicationId = 0x544C4D52; // "TLMR"
inline constexpr int kFormat = 1;

/// The time during which one section was recorded without a break.
struct Session {
    std::int64_t started = 0; // 100 ns since 1601-01-01 UTC
    std::string program;      // what recorded it, with its version
};

/// That the session which began last was not cut short.
struct SessionEnd {
    std::int64_t time = 0; // 100 ns since 1601-01-01 UTC
};

/// A channel as it was described while it was recorded.
struct ChannelInfo {
    ChannelIndex number = 0;
    std::string name;
    std::string longName;
    std::string unit;
    UnitClass unitClass = UnitClass::Plain;
    std::uint16_t timeoutSeconds = 0; // 0: never stale
};

struct BoatInfo {
    BoatIndex number = 0;
    std::string name;
    std::uint32_t mmsi = 0;   // 0: none
    std::uint32_t colour = 0; // red in the low byte
};

/// One value with its time stamp, or that there was none from then on.
struct Value {
    std::int64_t time = 0; // 100 ns since 1601-01-01 UTC
    ChannelIndex channel = 0;
    BoatIndex boat = 0;
    StorageKind kind = StorageKind::Double;
    std::optional<std::uint64_t> payload; // the record's bits; empty: no value

    /// As it stands in a section. `none` is the kind of the channel's record without a value.
    [[nodiscard]] Record record(StorageKind none) const noexcept {
        return payload ? Record{static_cast<std::uint64_t>(kind), *payload} : Record::none(none);
    }
    friend bool operator==(const Value&, const Value&) = default;
};

/// A row that makes no sense, and why.
struct Damage {
    std::string where; // "line 12"
    std::string why;
};

/// True for channels that can be recorded: all but the clock, which every write stamps anew, and those that only
/// stand for others.
[[nodiscard]] constexpr bool isRecordable(ChannelIndex channel) noexcept {
    return channel > ZAN_TIME && channel < kChannelCount && !isAlternating(channel);
}

} // namespace tallowmere::recording

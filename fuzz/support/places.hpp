// Where the documents say that things lie, and what they say of the channels: the library's own tables and
// records play no part.
#pragma once

#include "tests/channels/raw_section.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tallowmere::fuzz {

namespace place = test::place;

struct ChannelRow {
    std::uint16_t index;
    std::uint16_t compactSlot;
    int low;
    int high;
    int timeout;
    std::uint16_t precision;
    std::int16_t unitClass;
    bool isProtected;
    bool dampable;
    std::uint8_t log;
    int sensor;
    std::u16string_view shortName;
    std::u16string_view longName;
};

inline constexpr std::size_t kChannels = 414;
inline constexpr std::size_t kBoats = 100;

inline constexpr std::array<ChannelRow, kChannels> kRows{{
#define ROW(...) ChannelRow{__VA_ARGS__},
#include "tests/channels/catalogue_rows.inc"
#undef ROW
}};

struct ValuePlace {
    std::size_t stamp;
    std::size_t record;
};

/// Where a channel's current value of a boat lies; empty when the boat doesn't keep the channel.
inline std::optional<ValuePlace> valuePlace(std::size_t channel, std::size_t boat) noexcept {
    if (channel >= kChannels || boat >= kBoats) return std::nullopt;
    if (boat < 2) return ValuePlace{place::fullStamp(channel, boat), place::fullValue(channel, boat)};
    const std::size_t slot = kRows[channel].compactSlot;
    if (slot >= 34) return std::nullopt;
    return ValuePlace{place::compactStamp(slot, boat), place::compactValue(slot, boat)};
}

/// The channel that a write to this one may change too; 414 for none.
constexpr std::size_t derivedChannel(std::size_t channel) noexcept {
    switch (channel) {
    case 13:
        return 32; // rate of turn
    case 18:
        return 278; // heel rate
    case 19:
        return 277; // trim rate
    case 146:
        return 256; // GPS time offset
    case 282:
    case 283:
        return 284; // rudder toe
    default:
        return kChannels;
    }
}

} // namespace tallowmere::fuzz

// The channel catalogue: the constant table of 414 channels, compiled in.
//
// It does not know about the shared section: names, precision and unit class may be overridden
// there (settings of shared_area.hpp).
#pragma once

#include "core/channels/unit_class.hpp"

#include <tallowmere/tallowmere.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tallowmere {

inline constexpr std::size_t kChannelCount = ZAN_CHANNEL_COUNT;
inline constexpr std::size_t kBoatCount = ZAN_BOAT_COUNT;
inline constexpr std::size_t kFullBoatCount = 2;     // boats 0 and 1 keep every channel
inline constexpr std::size_t kCompactSlotCount = 34; // channels kept for boats 2 to 99

/// "None" in 16-bit fields of the catalogue and as a channel number in the shared section.
inline constexpr std::uint16_t kNone16 = ZAN_NO_CHANNEL;
/// `precision` of a row whose channel is not shown as a number.
inline constexpr std::uint8_t kNoPrecision = 255;

/// One row of the catalogue. Field meanings and units: legend of catalogue.def.
struct ChannelDef {
    std::uint16_t index;
    std::uint16_t compactIndex;
    std::int16_t minValue;
    std::int16_t maxValue;
    std::uint16_t timeoutSeconds;
    std::uint8_t precision;
    std::uint8_t unitClassCode;
    std::uint8_t ownBoatProtected;
    std::uint8_t dampable;
    std::uint8_t logDefault;
    std::uint8_t sensorFlag;
    const char16_t* shortName;
    const char16_t* longName;

    [[nodiscard]] constexpr UnitClass unitClass() const noexcept { return static_cast<UnitClass>(unitClassCode); }
};
static_assert(sizeof(void*) != 8 || sizeof(ChannelDef) == 32);
static_assert(offsetof(ChannelDef, unitClassCode) == 11);
static_assert(offsetof(ChannelDef, shortName) == 16);

inline constexpr std::array<ChannelDef, kChannelCount> kCatalogue{{
#define CHANNEL(index, name, compact, min, max, stale, prec, class, own, damp, log, sensor, shortName, longName)       \
    ChannelDef{index, compact, min, max,    stale,     prec,    static_cast<std::uint8_t>(UnitClass::class),           \
               own,   damp,    log, sensor, shortName, longName},
#include "core/channels/catalogue.def"
#undef CHANNEL
}};

/// The row of a channel, or null for an index of 414 or more.
[[nodiscard]] constexpr const ChannelDef* catalogueRow(std::size_t channel) noexcept {
    return channel < kChannelCount ? &kCatalogue[channel] : nullptr;
}

/// First and last user channel ("User 0" to "User 31"): names and unit class may be set at run time.
inline constexpr ChannelIndex kFirstUserChannel = ZAN_USER_0;
inline constexpr ChannelIndex kLastUserChannel = ZAN_USER_31;
/// First and last alternating channel ("Alt 0" to "Alt 9").
inline constexpr ChannelIndex kFirstAlternating = ZAN_ALT_0;
inline constexpr ChannelIndex kLastAlternating = ZAN_ALT_9;

[[nodiscard]] constexpr bool isUserChannel(std::size_t channel) noexcept {
    return channel >= kFirstUserChannel && channel <= kLastUserChannel;
}
[[nodiscard]] constexpr bool isAlternating(std::size_t channel) noexcept {
    return channel >= kFirstAlternating && channel <= kLastAlternating;
}

namespace catalogue_checks {

// The public constants are a derived file; each is held against its row here.
#define CHANNEL(index, name, ...) static_assert(ZAN_##name == (index), "run the target `derive`");
#include "core/channels/catalogue.def"
#undef CHANNEL

consteval bool indicesEqualRows() {
    for (std::size_t row = 0; row < kChannelCount; ++row)
        if (kCatalogue[row].index != row) return false;
    return true;
}

consteval bool compactSlotsFormOneRun() {
    std::array<bool, kCompactSlotCount> seen{};
    std::size_t count = 0;
    for (const ChannelDef& row : kCatalogue) {
        if (row.compactIndex == kNone16) continue;
        if (row.compactIndex >= kCompactSlotCount || seen[row.compactIndex]) return false;
        seen[row.compactIndex] = true;
        ++count;
    }
    return count == kCompactSlotCount;
}

consteval bool boundsAreOrdered() {
    return std::ranges::all_of(kCatalogue, [](const ChannelDef& row) { return row.minValue <= row.maxValue; });
}

consteval bool namesFit() {
    return std::ranges::all_of(kCatalogue, [](const ChannelDef& row) {
        return std::u16string_view(row.shortName).size() <= 15 && std::u16string_view(row.longName).size() <= 31;
    });
}

static_assert(indicesEqualRows());
static_assert(compactSlotsFormOneRun());
static_assert(boundsAreOrdered());
static_assert(namesFit());

} // namespace catalogue_checks
} // namespace tallowmere

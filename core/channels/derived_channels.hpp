// What the library computes from a write beyond the value itself: one row for each channel whose writes do so.
#pragma once

#include "core/channels/system_values.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace tallowmere {

enum class Derivation : std::uint8_t {
    ToeFromPort,      // the port rudder's value less the starboard one's, from a write to the one
    ToeFromStarboard, // or to the other
    LessMastAngle,    // the written value itself, less the own boat's mast angle
    Rate,             // change a second
    TimeOffset,       // the clock less the written time
};

struct DerivedChannel {
    ChannelIndex source;
    Derivation derivation;
    ChannelIndex target; // 32767: none of its own
    std::size_t flag;    // system flag that switches it on
};

inline constexpr std::size_t kAlways = kSystemFlagCount;

// clang-format off
inline constexpr std::array<DerivedChannel, 7> kDerivedChannels{{
    // source      derivation                     target           flag
    {ZAN_RUDDERP,  Derivation::ToeFromPort,       ZAN_RUDDERTOE,   kAlways},
    {ZAN_RUDDERS,  Derivation::ToeFromStarboard,  ZAN_RUDDERTOE,   kAlways},
    {ZAN_AWA,      Derivation::LessMastAngle,     kNone16,         system_flag::kCorrectMastAngle},
    {ZAN_HDG,      Derivation::Rate,              ZAN_ROT,         system_flag::kComputeTurnRate},
    {ZAN_HEEL,     Derivation::Rate,              ZAN_HEELRATE,    system_flag::kComputeTiltRates},
    {ZAN_TRIM,     Derivation::Rate,              ZAN_TRIMRATE,    system_flag::kComputeTiltRates},
    {ZAN_GPS_TIME, Derivation::TimeOffset,        ZAN_GPS_TOFFSET, kAlways},
}};
// clang-format on

namespace detail {
/// By channel: the row in which it is the source; past the end where there is none.
inline constexpr auto kDerivedRow = [] {
    std::array<std::uint8_t, kChannelCount> rows{};
    rows.fill(kDerivedChannels.size());
    for (std::size_t row = 0; row < kDerivedChannels.size(); ++row)
        rows[kDerivedChannels[row].source] = static_cast<std::uint8_t>(row);
    return rows;
}();
} // namespace detail

/// What follows from a write to a channel below 414; null for nothing.
[[nodiscard]] constexpr const DerivedChannel* derivedFrom(ChannelIndex channel) noexcept {
    const std::size_t row = detail::kDerivedRow[channel];
    return row < kDerivedChannels.size() ? &kDerivedChannels[row] : nullptr;
}
static_assert(std::ranges::all_of(kDerivedChannels, [](const auto& row) { return derivedFrom(row.source) == &row; }));

/// True for ROT, TrimRate, HeelRate, RudderToe and GPS tOffset: the library derives them from others, and what
/// it leaves in the record's header is not the kind.
[[nodiscard]] constexpr bool hasForeignHeader(ChannelIndex channel) noexcept {
    return channel < kChannelCount &&
           std::ranges::find(kDerivedChannels, channel, &DerivedChannel::target) != kDerivedChannels.end();
}

} // namespace tallowmere

// Values whose bits say who wrote them, when and for which slot: one that nobody wrote gives itself away.
#pragma once

#include "core/channels/catalogue.hpp"

#include <bit>
#include <cstdint>
#include <optional>
#include <vector>

namespace tallowmere::torture {

/// What a value says of itself.
struct Origin {
    unsigned writer = 0;        // 0 to 63
    std::uint32_t sequence = 0; // 30 bits
};

namespace detail {
inline constexpr int kChecksumBits = 16;
inline constexpr int kSequenceBits = 30;
inline constexpr std::uint64_t kOne = std::bit_cast<std::uint64_t>(1.0);

constexpr std::uint64_t checksum(std::uint64_t said, ChannelIndex channel, BoatIndex boat) noexcept {
    std::uint64_t x = said ^ (std::uint64_t{channel} << 48) ^ (std::uint64_t{boat} << 40);
    x = (x ^ (x >> 31)) * 0x7FB5D329728EA185U;
    x = (x ^ (x >> 27)) * 0x81DADEF4BC2DD44DU;
    return x >> (64 - kChecksumBits);
}
} // namespace detail

/// A double from 1 up to 2, in range for every channel of slots().
constexpr double selfChecking(Origin origin, ChannelIndex channel, BoatIndex boat) noexcept {
    const std::uint64_t sequence = origin.sequence & ((1U << detail::kSequenceBits) - 1);
    const std::uint64_t said = (std::uint64_t{origin.writer} << detail::kSequenceBits) | sequence;
    return std::bit_cast<double>(detail::kOne | (said << detail::kChecksumBits) |
                                 detail::checksum(said, channel, boat));
}

/// Empty for a value that nobody wrote to this slot.
constexpr std::optional<Origin> originOf(double value, ChannelIndex channel, BoatIndex boat) noexcept {
    const std::uint64_t mantissa = std::bit_cast<std::uint64_t>(value) ^ detail::kOne;
    if ((mantissa >> 52) != 0) return std::nullopt;
    const std::uint64_t said = mantissa >> detail::kChecksumBits;
    if (detail::checksum(said, channel, boat) != (mantissa & ((1U << detail::kChecksumBits) - 1))) return std::nullopt;
    return Origin{static_cast<unsigned>(said >> detail::kSequenceBits),
                  static_cast<std::uint32_t>(said & ((1U << detail::kSequenceBits) - 1))};
}
static_assert(originOf(selfChecking({63, 12345}, 1, 99), 1, 99)->sequence == 12345);
static_assert(!originOf(selfChecking({63, 12345}, 1, 99), 1, 98) && !originOf(1.0, 1, 0));

/// Where a value of a boat lies.
struct Place {
    ChannelIndex channel;
    BoatIndex boat;
};

/// Every place of the compact channels that takes such a value as it is: all are plain doubles but the clock,
/// which the library writes itself.
/// protectedToo   also those that a host must open for the own boat
inline std::vector<Place> compactPlaces(bool protectedToo) {
    std::vector<Place> places;
    for (BoatIndex boat = 0; boat < kBoatCount; ++boat)
        for (ChannelIndex channel = 1; channel < kChannelCount; ++channel) {
            const ChannelDef& row = kCatalogue[channel];
            if (row.compactIndex >= kCompactSlotCount) continue;
            if (protectedToo || boat != 0 || row.ownBoatProtected == 0) places.push_back({channel, boat});
        }
    return places;
}

} // namespace tallowmere::torture

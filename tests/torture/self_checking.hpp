// Values whose bits say who wrote them, when and for which slot: one that nobody wrote gives itself away.
#pragma once

#include "core/channels/catalogue.hpp"

#include <tallowmere/tallowmere.h>

#include <bit>
#include <cstdint>
#include <optional>
#include <vector>

namespace tallowmere::torture {

/// What a value says of itself.
struct Origin {
    unsigned writer = 0;        // 0 to 63
    std::uint32_t sequence = 0; // 28 bits
    friend bool operator==(const Origin&, const Origin&) = default;
};

namespace detail {
inline constexpr int kChecksumBits = 16;
inline constexpr int kWriterBits = 6;
inline constexpr int kSequenceBits = 28;
inline constexpr int kSaidBits = kWriterBits + kSequenceBits;
inline constexpr std::uint64_t kOne = std::bit_cast<std::uint64_t>(1.0);

constexpr std::uint64_t lowBits(std::uint64_t word, int bits) noexcept {
    return word & ((std::uint64_t{1} << bits) - 1);
}

/// All 64 bits, of which a word keeps the highest.
constexpr std::uint64_t checksum(std::uint64_t said, unsigned kind, ChannelIndex channel, BoatIndex boat) noexcept {
    std::uint64_t x = said ^ (std::uint64_t{channel} << 48) ^ (std::uint64_t{boat} << 40) ^ (std::uint64_t{kind} << 36);
    x = (x ^ (x >> 31)) * 0x7FB5D329728EA185U;
    x = (x ^ (x >> 27)) * 0x81DADEF4BC2DD44DU;
    return x;
}
} // namespace detail

/// 50 bits from the top: checksum, writer, sequence. So each half of 32 bits is another with nearly every write, and
/// the halves of two writes give themselves away.
/// kind   what the word stands for: one is never taken for the other
constexpr std::uint64_t selfCheckingWord(Origin origin, unsigned kind, ChannelIndex channel, BoatIndex boat) noexcept {
    const std::uint64_t said = (std::uint64_t{origin.writer} << detail::kSequenceBits) |
                               detail::lowBits(origin.sequence, detail::kSequenceBits);
    return (detail::checksum(said, kind, channel, boat) >> (64 - detail::kChecksumBits) << detail::kSaidBits) | said;
}

/// Empty for a word that nobody wrote to this slot.
constexpr std::optional<Origin> originOfWord(std::uint64_t word, unsigned kind, ChannelIndex channel,
                                             BoatIndex boat) noexcept {
    const Origin origin{static_cast<unsigned>(detail::lowBits(word, detail::kSaidBits) >> detail::kSequenceBits),
                        static_cast<std::uint32_t>(detail::lowBits(word, detail::kSequenceBits))};
    if (word != selfCheckingWord(origin, kind, channel, boat)) return std::nullopt;
    return origin;
}

/// A double from 1 up to 1.25, in range for every channel of compactPlaces().
constexpr double selfChecking(Origin origin, ChannelIndex channel, BoatIndex boat) noexcept {
    const std::uint64_t word = selfCheckingWord(origin, ZAN_KIND_DOUBLE, channel, boat);
    return std::bit_cast<double>(detail::kOne | word);
}

/// Empty for a value that nobody wrote to this slot.
constexpr std::optional<Origin> originOf(double value, ChannelIndex channel, BoatIndex boat) noexcept {
    const std::uint64_t mantissa = std::bit_cast<std::uint64_t>(value) ^ detail::kOne;
    return originOfWord(mantissa, ZAN_KIND_DOUBLE, channel, boat);
}
static_assert(originOf(selfChecking({63, 12345}, 1, 99), 1, 99) == Origin{63, 12345});
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

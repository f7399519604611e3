// The same for records of every kind: payloads, and headers where records of several kinds stand on one channel.
#pragma once

#include "tests/torture/self_checking.hpp"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <optional>

namespace tallowmere::torture {

/// A record as its two words, as the library stores it.
struct RecordWords {
    std::uint64_t header = 0;
    std::uint64_t payload = 0;
};

inline RecordWords wordsOf(const ChannelValue& record) noexcept {
    return std::bit_cast<RecordWords>(record);
}
inline ChannelValue recordOf(const RecordWords& words) noexcept {
    return std::bit_cast<ChannelValue>(words);
}

namespace detail {
inline constexpr unsigned kHeader = 4; // as a kind of word, beside enum ZanKind
inline constexpr double kTicksADay = 8.64e11;

/// An integer from the top: checksum (16), writer (4), sequence (12).
constexpr std::uint32_t integerOf(Origin origin, const Place& place) noexcept {
    const auto said = static_cast<std::uint32_t>((lowBits(origin.writer, 4) << 12) | lowBits(origin.sequence, 12));
    const std::uint64_t sum = checksum(said, ZAN_KIND_INTEGER, place.channel, place.boat);
    return static_cast<std::uint32_t>(sum >> 48 << 16) | said;
}
/// What a record has above its integer. Nobody reads it as a part of the value.
constexpr std::uint64_t aboveInteger(std::uint32_t integer, const Place& place) noexcept {
    return checksum(integer, kHeader, place.channel, place.boat) >> 32 << 32;
}
} // namespace detail

/// True when this write is one of a whole record (SetZanVar2), false for one of a double (SetZanVar). Told by what
/// every kind carries of a sequence.
constexpr bool isOfRecord(const Origin& origin) noexcept {
    return std::popcount(detail::lowBits(origin.sequence, 12)) % 2 != 0;
}

/// A payload of a kind. A time is a span of up to 1,303 days.
constexpr std::uint64_t selfCheckingPayload(Origin origin, unsigned kind, const Place& place) noexcept {
    if (kind == ZAN_KIND_DOUBLE) return std::bit_cast<std::uint64_t>(selfChecking(origin, place.channel, place.boat));
    if (kind != ZAN_KIND_INTEGER) return selfCheckingWord(origin, kind, place.channel, place.boat);
    const std::uint32_t integer = detail::integerOf(origin, place);
    return integer | (isOfRecord(origin) ? detail::aboveInteger(integer, place) : 0);
}

constexpr std::optional<Origin> originOfPayload(std::uint64_t payload, unsigned kind, const Place& place) noexcept {
    if (kind == ZAN_KIND_DOUBLE) return originOf(std::bit_cast<double>(payload), place.channel, place.boat);
    if (kind != ZAN_KIND_INTEGER) return originOfWord(payload, kind, place.channel, place.boat);
    const Origin origin{static_cast<unsigned>(detail::lowBits(payload >> 12, 4)),
                        static_cast<std::uint32_t>(detail::lowBits(payload, 12))};
    if (payload != selfCheckingPayload(origin, kind, place)) return std::nullopt;
    return origin;
}
static_assert(originOfPayload(selfCheckingPayload({3, 7}, ZAN_KIND_INTEGER, {1, 2}), ZAN_KIND_INTEGER, {1, 2}) ==
              Origin{3, 7});
static_assert(!originOfPayload(selfCheckingPayload({3, 7}, ZAN_KIND_TIME, {1, 2}), ZAN_KIND_BYTE, {1, 2}));

/// A header with its kind byte and, in the seven bytes behind it, who wrote it.
constexpr std::uint64_t selfCheckingHeader(Origin origin, unsigned kind, const Place& place) noexcept {
    return kind | (selfCheckingWord(origin, detail::kHeader + kind, place.channel, place.boat) << 8);
}
constexpr std::optional<Origin> originOfHeader(std::uint64_t header, const Place& place) noexcept {
    const auto kind = static_cast<unsigned>(detail::lowBits(header, 8));
    if (kind > ZAN_KIND_TIME) return std::nullopt;
    return originOfWord(header >> 8, detail::kHeader + kind, place.channel, place.boat);
}
static_assert(originOfHeader(selfCheckingHeader({3, 7}, ZAN_KIND_TIME, {1, 2}), {1, 2}) == Origin{3, 7});

/// What SetZanVar takes for the payload, of a channel that holds numbers, integers or spans of time. A double of days
/// is precise to the tick for such spans.
inline double asDouble(std::uint64_t payload, unsigned kind) noexcept {
    if (kind == ZAN_KIND_DOUBLE) return std::bit_cast<double>(payload);
    if (kind == ZAN_KIND_INTEGER) return static_cast<std::int32_t>(payload);
    return static_cast<double>(payload) / detail::kTicksADay;
}

/// Who wrote the value that GetZanVar gives for such a payload.
inline std::optional<Origin> originOfDouble(double value, unsigned kind, const Place& place) noexcept {
    if (kind == ZAN_KIND_DOUBLE) return originOf(value, place.channel, place.boat);
    const double whole = std::round(kind == ZAN_KIND_INTEGER ? value : value * detail::kTicksADay);
    if (!(std::fabs(whole) < 0x1p52) ||
        asDouble(static_cast<std::uint64_t>(static_cast<std::int64_t>(whole)), kind) != value)
        return std::nullopt;
    const auto payload = static_cast<std::uint64_t>(static_cast<std::int64_t>(whole));
    if (kind != ZAN_KIND_INTEGER) return originOfPayload(payload, kind, place);
    // An integer's upper half is not in its value.
    const auto integer = static_cast<std::uint32_t>(payload);
    const auto plain = originOfPayload(integer, kind, place);
    return plain ? plain : originOfPayload(integer | detail::aboveInteger(integer, place), kind, place);
}

} // namespace tallowmere::torture

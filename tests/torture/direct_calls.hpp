// Self-checking values written and read by the functions that a test is linked with.
#pragma once

#include "tests/torture/self_checking.hpp"

#include <tallowmere/tallowmere.h>

#include <array>
#include <cstdint>
#include <optional>

namespace tallowmere::torture {

/// Of each kind of block.
inline constexpr std::array<Place, 5> kPlaces{
    {{ZAN_BSP, 0}, {ZAN_AWA, 0}, {ZAN_USER_20, 1}, {ZAN_HDG, 2}, {ZAN_BSP, 99}}};

/// By SetZanVar and SetZanVar2 in turn.
inline bool writeAt(const Place& place, const Origin& origin) {
    const double value = selfChecking(origin, place.channel, place.boat);
    if (origin.sequence % 2 == 0) return SetZanVar(place.channel, value, place.boat) == 1;
    ChannelValue record{};
    record.kind = ZAN_KIND_DOUBLE;
    record.payload.number = value;
    return SetZanVar2(place.channel, &record, place.boat) == 1;
}

/// What GetZanVar gives. Empty when it, or GetZanVar2 behind it, gives nothing or what nobody wrote.
inline std::optional<Origin> readAt(const Place& place) {
    double value = 0;
    std::uint16_t source = 0;
    if (GetZanVar(place.channel, &value, place.boat, &source) == 0 || source != place.channel) return std::nullopt;
    ChannelValue record{};
    if (GetZanVar2(place.channel, &record, place.boat, &source) == 0 || record.kind != ZAN_KIND_DOUBLE)
        return std::nullopt;
    if (!originOf(record.payload.number, place.channel, place.boat)) return std::nullopt;
    return originOf(value, place.channel, place.boat);
}

inline bool systemValuesAreTheDefaults() {
    double variable = 0;
    std::uint8_t flag = 0;
    return GetBoatNum() == ZAN_BOAT_COUNT && GetZanVarNum() == ZAN_CHANNEL_COUNT && GetSysVar(0, &variable) != 0 &&
           variable == 15.85 && GetSysBool(0, &flag) != 0 && flag == 1;
}

} // namespace tallowmere::torture

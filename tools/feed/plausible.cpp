#include "tools/feed/plausible.hpp"

namespace tallowmere::feed {
namespace {

struct Bounds {
    double least;
    double most;
};

Bounds boundsOf(ChannelIndex channel, const ChannelDef& row) noexcept {
    if (row.minValue != row.maxValue) return {static_cast<double>(row.minValue), static_cast<double>(row.maxValue)};
    if (channel == ZAN_DEPTH) return {0.0, 12'000.0};
    switch (row.unitClass()) {
    case UnitClass::DateTime:
        return {1.0, 401'768.0}; // 1899-12-31 to the end of 2999
    case UnitClass::BoatSpeed:
        return {0.0, 100.0};
    case UnitClass::Depth: // heights too, and the geoid's below the ellipsoid
        return {-12'000.0, 12'000.0};
    case UnitClass::Distance:
        return {0.0, 10'000'000.0};
    case UnitClass::Temperature:
        return {-100.0, 200.0};
    case UnitClass::Barometer:
        return {500.0, 1'200.0};
    case UnitClass::TurnRate:
        return {-90.0, 90.0};
    default:
        return {-1e6, 1e6};
    }
}

} // namespace

bool isPlausible(ChannelIndex channel, double value) noexcept {
    const ChannelDef* const row = catalogueRow(channel);
    if (row == nullptr) return false;
    const Bounds bounds = boundsOf(channel, *row);
    return value != NO_VALUE && value >= bounds.least && value <= bounds.most;
}

} // namespace tallowmere::feed

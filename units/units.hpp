// The units that values can be shown in. Each table is indexed by the setting that selects its row.
#pragma once

#include <array>
#include <cstdint>

namespace tallowmere {

struct UnitDef {
    std::int32_t id; // the setting that selects the row
    double factor;   // shown value = base value * factor
    const char16_t* abbreviation;
    const char16_t* name;
};

// clang-format off
inline constexpr std::array<UnitDef, 3> kDepthUnits{{ // base: metres
    {0, 1.0,                u"m",     u"Metres"},
    {1, 0.5468,             u"fth",   u"Fathoms"},
    {2, 3.2808,             u"ft",    u"Feet"},
}};

inline constexpr std::int32_t kBoatLengths = 1; // the distance row that is divided by the boat's length

inline constexpr std::array<UnitDef, 6> kDistanceUnits{{ // base: nautical miles
    {0, 1.0,                u"nm",    u"Nautical miles"},
    {1, 1852.0,             u"bl",    u"Boat lengths"}, // metres, for the division by the length
    {2, 1852.0,             u"m",     u"Metres"},
    {3, 1.852,              u"km",    u"Kilometres"},
    {4, 2025.3718285214347, u"yd",    u"Yards"},
    {5, 6076.115485564304,  u"ft",    u"Feet"},
}};

inline constexpr std::array<UnitDef, 3> kSpeedUnits{{ // base: knots
    {0, 1.0,                u"kt",    u"Knots"},
    {1, 0.5144444704055786, u"m/s",   u"Metres per second"}, // KEPT: a single-precision factor, widened
    {2, 1.852,              u"km/hr", u"Kilometres per hour"},
}};

inline constexpr std::array<UnitDef, 5> kPressureUnits{{ // base: pascals
    {0, 1.0,                u"Pa",    u"Pa"},
    {1, 0.001,              u"kPa",   u"kPa"},
    {2, 0.00014504,         u"psi",   u"psi"},
    {3, 1e-05,              u"bar",   u"bar"},
    {4, 0.00029529983071445, u"InHg", u"inHg"}, // KEPT: the two spellings
}};
// clang-format on

} // namespace tallowmere

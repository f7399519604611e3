#include "units/unit_names.hpp"

#include <array>
#include <cstddef>

namespace tallowmere {
namespace {

// By the number of the class. Units are written as in units/units.hpp.
constexpr std::array<UnitName, 23> kUnitNames{{
    {"plain number", ""},
    {"date and time", "UTC"},
    {"time span", "h:mm:ss"},
    {"depth or height", "m"},
    {"distance", "nm"},
    {"distance to a line", "nm"},
    {"bearing", "\u00B0"},
    {"signed angle", "\u00B0"},
    {"latitude", "\u00B0"},
    {"longitude", "\u00B0"},
    {"percentage", "%"},
    {"integer code", ""},
    {"boat speed", "kt"},
    {"wind angle", "\u00B0"},
    {"temperature", "\u00B0C"},
    {"barometric pressure", "mbar"},
    {"voltage", "V"},
    {"length", "m"},
    {"rig length", ""}, // whatever the rig is measured in
    {"rate of turn", "\u00B0/s"},
    {"wind speed", "kt"},
    {"electric current", "A"},
    {"fluid pressure", "Pa"},
}};
static_assert(kUnitNames.size() == static_cast<std::size_t>(UnitClass::FluidPressure) + 1);

} // namespace

UnitName unitNameOf(UnitClass unitClass) noexcept {
    const auto index = static_cast<std::size_t>(unitClass); // a negative class becomes huge
    return kUnitNames[index < kUnitNames.size() ? index : 0];
}

} // namespace tallowmere

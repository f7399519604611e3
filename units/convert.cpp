#include "units/convert.hpp"

#include "core/channels/angle_steps.hpp"
#include "core/channels/held_exceptions.hpp"
#include "core/channels/system_values.hpp"
#include "units/units.hpp"

#include <cmath>
#include <span>

namespace tallowmere {
namespace {

constexpr double kTurn = 360.0; // degrees

/// The value in the unit that the setting selects, `otherwise` when it selects none. A negative setting counts
/// as too large.
double scaled(double value, std::span<const UnitDef> units, std::int32_t setting, double otherwise) noexcept {
    const auto row = static_cast<std::uint32_t>(setting);
    return row < units.size() ? value * units[row].factor : otherwise;
}

double showDistance(const SystemValues& system, double value, std::int32_t setting) noexcept {
    if (setting != kBoatLengths) return scaled(value, kDistanceUnits, setting, value);
    const double length = system.variable(system_variable::kBoatLength);
    if (length == NO_VALUE || length == 0.0) return value;
    return value * (kDistanceUnits[kBoatLengths].factor / length);
}

double showBearing(const ValueStore& values, double value, double variation) noexcept {
    if (SystemValues(values.area()).flag(system_flag::kTrueBearings) != 0) return stepToBearing(value);
    if (variation == NO_VALUE) variation = values.recordAsDouble(ZAN_MAGVAR, values.fetch(ZAN_MAGVAR, 0).record).value;
    if (variation == NO_VALUE) return NO_VALUE;
    // Whole turns off first, exactly: a sum may lie any number of turns away.
    const double sum = std::fmod(value + variation, kTurn);
    return stepToBearing(sum < 0.0 ? sum + kTurn : sum);
}

double convert(const ValueStore& values, ChannelIndex channel, double value, double variation) noexcept {
    const SystemValues system(values.area());
    switch (unitClassOf(values.area(), channel)) {
    case UnitClass::Depth:
        return scaled(value, kDepthUnits, system.integer(system_integer::kDepthUnit), NO_VALUE);
    case UnitClass::Distance:
        return showDistance(system, value, system.integer(system_integer::kDistanceUnit));
    case UnitClass::LineDistance:
        return showDistance(system, value, system.integer(system_integer::kLineDistanceUnit));
    case UnitClass::Bearing:
        return showBearing(values, value, variation);
    case UnitClass::SignedAngle:
    case UnitClass::WindAngle:
        return stepToSigned(value);
    case UnitClass::BoatSpeed:
    case UnitClass::WindSpeed:
        return scaled(value, kSpeedUnits, system.integer(system_integer::kSpeedUnit), value);
    case UnitClass::Temperature:
        return system.flag(system_flag::kFahrenheit) != 0 ? value * 9.0 / 5.0 + 32.0 : value;
    case UnitClass::FluidPressure:
        return scaled(value, kPressureUnits, system.integer(system_integer::kPressureUnit), value);
    default:
        return value;
    }
}

} // namespace

double ConvertForDisplay(const ValueStore& values, ChannelIndex channel, double value, double variation) noexcept {
    if (values.area() == nullptr || value == NO_VALUE) return value;
    // Value, variation and boat length are any numbers.
    return withExceptionsHeld([&] { return convert(values, channel, value, variation); });
}

} // namespace tallowmere

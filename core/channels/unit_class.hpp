// Unit classes: what a channel's number means, and in which kind of record it is kept.
#pragma once

#include <cstdint>

namespace tallowmere {

/// What the value of a channel measures. Base units in brackets. The shared section may hold any
/// other number here; such a class behaves like `Plain`.
enum class UnitClass : std::int16_t {
    Plain = 0,
    DateTime = 1,         // days since 1899-12-30, as a double; UTC
    TimeSpan = 2,         // days, as a double
    Depth = 3,            // metres; heights too
    Distance = 4,         // nautical miles
    LineDistance = 5,     // nautical miles, short distances to a line
    Bearing = 6,          // degrees, 0 to 360
    SignedAngle = 7,      // degrees, -180 to 180, starboard positive
    Latitude = 8,         // degrees, north positive
    Longitude = 9,        // degrees, east positive
    Percentage = 10,      //
    IntegerCode = 11,     //
    BoatSpeed = 12,       // knots
    WindAngle = 13,       // degrees off the bow, -180 to 180, starboard positive
    Temperature = 14,     // degrees Celsius
    Barometer = 15,       // millibars
    Voltage = 16,         // volts
    Length = 17,          // metres
    RigLength = 18,       // the unit that the rig is measured in
    TurnRate = 19,        // degrees a second, to starboard positive
    WindSpeed = 20,       // knots
    ElectricCurrent = 21, // amperes
    FluidPressure = 22,   // pascals
};

/// Kind byte of a 16-byte value record.
enum class StorageKind : std::uint8_t {
    Byte = 0, // never written as such; read as an unsigned byte
    Double = 1,
    Integer = 2, // signed 32-bit
    Time = 3,    // signed 64-bit count of 100 ns
};

/// The storage kind that a unit class implies: every class but the two time classes and the integer
/// code keeps a double, unknown classes included.
[[nodiscard]] constexpr StorageKind storageKindOf(UnitClass unitClass) noexcept {
    switch (unitClass) {
    case UnitClass::DateTime:
    case UnitClass::TimeSpan:
        return StorageKind::Time;
    case UnitClass::IntegerCode:
        return StorageKind::Integer;
    default:
        return StorageKind::Double;
    }
}

/// True for the two classes whose range is -180 to 180 degrees.
[[nodiscard]] constexpr bool isSignedAngle(UnitClass unitClass) noexcept {
    return unitClass == UnitClass::SignedAngle || unitClass == UnitClass::WindAngle;
}

} // namespace tallowmere

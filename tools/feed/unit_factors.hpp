// From the units of sentences to those of channels.
#pragma once

namespace tallowmere::feed {

inline constexpr double kMetresPerNauticalMile = 1852.0;
inline constexpr double kKilometresPerNauticalMile = 1.852;
inline constexpr double kKilometresPerStatuteMile = 1.609344;
inline constexpr double kKnotsPerMetrePerSecond = 3600.0 / 1852.0;
inline constexpr double kMetresPerFoot = 0.3048;
inline constexpr double kMetresPerFathom = 1.8288;
inline constexpr double kMillibarsPerBar = 1000.0;
inline constexpr double kMillibarsPerPascal = 0.01;
inline constexpr double kMillibarsPerInchOfMercury = 33.86389;

[[nodiscard]] constexpr double celsiusFromFahrenheit(double degrees) noexcept {
    return (degrees - 32.0) * 5.0 / 9.0;
}

} // namespace tallowmere::feed

// How fast a yacht of twelve metres sails.
#pragma once

namespace tallowmere::simulate {

inline constexpr double kBeatAngle = 42.0; // the true wind angle of the best way upwind
inline constexpr double kRunAngle = 150.0; // and downwind

/// Knots through the water in steady sailing. trueWindAngle: degrees, either side; trueWindSpeed: knots.
[[nodiscard]] double polarSpeed(double trueWindAngle, double trueWindSpeed) noexcept;

} // namespace tallowmere::simulate

// Plane geometry of the race area: east and north, in metres or knots.
#pragma once

#include <cmath>
#include <numbers>

namespace tallowmere::simulate {

inline constexpr double kMetresPerSecondPerKnot = 1852.0 / 3600.0;

[[nodiscard]] inline double radians(double degrees) noexcept {
    return degrees * std::numbers::pi / 180.0;
}
[[nodiscard]] inline double degrees(double angle) noexcept {
    return angle * 180.0 / std::numbers::pi;
}

/// 0 to below 360.
[[nodiscard]] inline double bearing360(double angle) noexcept {
    const double turned = std::fmod(angle, 360.0);
    const double positive = turned < 0.0 ? turned + 360.0 : turned;
    return positive >= 360.0 ? 0.0 : positive; // a tiny negative angle rounds to a whole turn
}
/// Above -180 to 180, starboard positive.
[[nodiscard]] inline double signed180(double angle) noexcept {
    const double positive = bearing360(angle);
    return positive > 180.0 ? positive - 360.0 : positive;
}

struct Vector {
    double east = 0.0;
    double north = 0.0;

    [[nodiscard]] double length() const noexcept { return std::hypot(east, north); }
    /// The direction that it points to, degrees true.
    [[nodiscard]] double direction() const noexcept { return bearing360(degrees(std::atan2(east, north))); }

    friend Vector operator+(Vector a, Vector b) noexcept { return {a.east + b.east, a.north + b.north}; }
    friend Vector operator-(Vector a, Vector b) noexcept { return {a.east - b.east, a.north - b.north}; }
    friend Vector operator*(Vector a, double factor) noexcept { return {a.east * factor, a.north * factor}; }
};

[[nodiscard]] inline Vector polarVector(double direction, double length) noexcept {
    return {length * std::sin(radians(direction)), length * std::cos(radians(direction))};
}

} // namespace tallowmere::simulate

#include "tools/simulate/start_line.hpp"

#include "tools/simulate/polar.hpp"

namespace tallowmere::simulate {
namespace {

double windFrom(const Race& race) noexcept {
    return bearing360(Boat::trueWind(race.surroundings()).direction() + 180.0);
}

double dot(Vector a, Vector b) noexcept {
    return a.east * b.east + a.north * b.north;
}

} // namespace

StartLine startLineOf(const Race& race) noexcept {
    const Course& course = race.course();
    const double bias = signed180(windFrom(race) - course.windDirection);
    return {.portEnd = race.placeOf(course.onLine(-0.5)),
            .starboardEnd = race.placeOf(course.onLine(0.5)),
            .squareWind = course.windDirection,
            .biasDegrees = bias,
            .biasMetres = course.lineLength * std::sin(radians(bias))};
}

StartApproach startApproachOf(const Race& race) {
    const Boat& boat = race.boat(0);
    const Surroundings& surroundings = race.surroundings();
    const Vector across = race.course().upwind(1.0);
    const double windSpeed = Boat::trueWind(surroundings).length();
    const Vector closeHauled = polarVector(windFrom(race) - kBeatAngle, polarSpeed(kBeatAngle, windSpeed));
    const Vector way = (closeHauled + surroundings.current) * kMetresPerSecondPerKnot;
    const Vector now = boat.overGround(surroundings) * kMetresPerSecondPerKnot;

    StartApproach approach{};
    approach.secondsToGun = race.course().secondsToStart - race.time();
    approach.metresBelow = -dot(boat.position(), across);
    approach.secondsToLine = approach.metresBelow / dot(way, across);
    approach.metresToLine = approach.secondsToLine * way.length();
    approach.secondsToBurn = approach.secondsToGun - approach.secondsToLine;
    approach.metresBelowAtGun = approach.metresBelow - dot(now, across) * approach.secondsToGun;
    return approach;
}

} // namespace tallowmere::simulate

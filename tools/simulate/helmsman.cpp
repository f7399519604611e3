#include "tools/simulate/helmsman.hpp"

#include "tools/simulate/polar.hpp"

#include <algorithm>

namespace tallowmere::simulate {
namespace {

constexpr double kApproachSeconds = 60.0;  // how long before the gun the boats turn to the line
constexpr double kApproachSpeed = 3.2;     // knots, on average, on the way to it
constexpr double kRoundingDistance = 45.0; // metres

} // namespace

Helm Helmsman::steer(const Boat& boat, const Surroundings& surroundings, double time) noexcept {
    const double windFrom = bearing360(Boat::trueWind(surroundings).direction() + 180.0);
    if (!knowsWind_) usualWind_ = windFrom;
    knowsWind_ = true;
    usualWind_ = bearing360(usualWind_ + signed180(windFrom - usualWind_) * 0.001);
    const double secondsLeft = course_.secondsToStart - time;
    if (secondsLeft > kApproachSeconds) return waitBelowLine(boat, windFrom);
    if (secondsLeft > 0.0) return approachLine(boat, windFrom, secondsLeft);
    return race(boat, windFrom, time);
}

/// Reaching to and fro about the place from which to approach; away from the line at one end (a gybe),
/// towards it at the other (a tack).
Helm Helmsman::waitBelowLine(const Boat& boat, double windFrom) noexcept {
    constexpr double kHalfReach = 60.0; // metres
    const double closeHauled = course_.windDirection - kBeatAngle;
    const Vector place =
        course_.onLine(slot_) - polarVector(closeHauled, kApproachSeconds * kApproachSpeed * kMetresPerSecondPerKnot);
    const Vector away = boat.position() - place;
    const double across = away.east * std::sin(radians(course_.windDirection + 90.0)) +
                          away.north * std::cos(radians(course_.windDirection + 90.0));
    const double above =
        away.east * std::sin(radians(course_.windDirection)) + away.north * std::cos(radians(course_.windDirection));
    const int before = reach_;
    if (across > kHalfReach) reach_ = -1;
    if (across < -kHalfReach) reach_ = 1;
    if (reach_ != before) turn_ = above > 0.0 ? -reach_ : reach_;
    // A little up or down to stay level with the place.
    const double correction = std::clamp(above * 0.4, -20.0, 20.0);
    Helm helm{.heading = bearing360(windFrom + reach_ * (90.0 + correction)), .power = 0.75};
    if (std::abs(signed180(helm.heading - boat.heading())) > 60.0) helm.turn = turn_;
    tack_ = 1;
    return helm;
}

/// On starboard tack to the slot, with the sails eased so as to be there at the gun.
Helm Helmsman::approachLine(const Boat& boat, double windFrom, double secondsLeft) noexcept {
    lastTurn_ = course_.secondsToStart; // nobody tacks in the crowd on the line
    const Vector way = course_.onLine(slot_) - boat.position();
    const double wanted = way.length() / kMetresPerSecondPerKnot / secondsLeft;
    const double heading = way.direction();
    const double windAngle = signed180(windFrom - heading);
    Helm helm{.heading = heading, .power = std::clamp(0.5 + (wanted - boat.boatSpeed()) * 0.6, 0.0, 1.0)};
    if (windAngle < kBeatAngle) helm.heading = bearing360(windFrom - kBeatAngle);
    return helm;
}

Helm Helmsman::race(const Boat& boat, double windFrom, double time) noexcept {
    const Vector target = upwindLeg_ ? course_.windwardMark() : course_.leewardMark();
    if ((target - boat.position()).length() < kRoundingDistance) upwindLeg_ = !upwindLeg_;
    return sailTo(boat, windFrom, target, time);
}

Helm Helmsman::sailTo(const Boat& boat, double windFrom, Vector target, double time) noexcept {
    const double straight = (target - boat.position()).direction();
    const double windAngle = signed180(windFrom - straight);
    const bool beating = std::abs(windAngle) < kBeatAngle;
    const bool running = std::abs(windAngle) > kRunAngle;
    const int before = tack_;
    if (beating || running)
        considerShift(windFrom, beating, time);
    else
        tack_ = windAngle > 0.0 ? 1 : -1; // the mark can be laid
    if (tack_ != before) lastTurn_ = time;
    const double sailed = beating ? kBeatAngle : kRunAngle;
    Helm helm{.heading = beating || running ? bearing360(windFrom - tack_ * sailed) : straight};
    // Through the wind when close to it, the other way when far from it.
    const double now = signed180(windFrom - boat.heading());
    if (now * tack_ < 0.0) helm.turn = (std::abs(now) < 90.0) == (tack_ > 0) ? -1 : 1;
    return helm;
}

/// A boat that the wind heads tacks; one that it lifts on the run gybes. Not too often.
void Helmsman::considerShift(double windFrom, bool upwind, double time) noexcept {
    const double pause = 40.0 + 10.0 * patience_; // seconds
    if (time - lastTurn_ < pause) return;
    const double lift = signed180(windFrom - usualWind_) * tack_; // upwind: veering lifts a boat on starboard tack
    const double header = upwind ? -lift : lift;
    if (header > patience_) tack_ = -tack_;
}

} // namespace tallowmere::simulate

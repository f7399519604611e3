#include "tools/simulate/boat.hpp"

#include "tools/simulate/polar.hpp"

#include <algorithm>

namespace tallowmere::simulate {
namespace {

constexpr double kFastestTurn = 11.0; // degrees a second

/// Moves a value towards another as something with that much inertia does.
double approach(double value, double target, double seconds, double timeConstant) noexcept {
    return target + (value - target) * std::exp(-seconds / timeConstant);
}

} // namespace

Boat::Boat(Vector position, double heading, double speed, double speedFactor) noexcept
    : position_(position), heading_(heading), speed_(speed), speedFactor_(speedFactor) {}

Vector Boat::throughWater() const noexcept {
    const double sideways = speed_ * std::tan(radians(leeway_));
    return polarVector(heading_, speed_) + polarVector(heading_ + 90.0, sideways);
}

void Boat::step(double seconds, const Surroundings& surroundings, const Helm& helm) noexcept {
    const Vector wind = trueWind(surroundings);
    const double angleBefore = angleOffBow(wind);
    turn(seconds, helm, angleBefore);
    const double angle = angleOffBow(wind);
    const bool gybed = angle * angleBefore < 0.0 && std::abs(angle) > 90.0;
    sinceGybe_ = gybed ? 0.0 : sinceGybe_ + seconds;
    drive(seconds, helm, angle, wind.length());
    lean(seconds, surroundings, helm);
    position_ = position_ + overGround(surroundings) * (kMetresPerSecondPerKnot * seconds);
    distance_ += throughWater().length() * seconds / 3600.0;
}

void Boat::turn(double seconds, const Helm& helm, double trueWindAngle) noexcept {
    double wanted = signed180(helm.heading - heading_);
    if (helm.turn > 0 && wanted < -5.0) wanted += 360.0;
    if (helm.turn < 0 && wanted > 5.0) wanted -= 360.0;
    // A slow boat answers slowly.
    const double fastest = kFastestTurn * std::clamp(speed_ / 4.0, 0.25, 1.0);
    const double rate = std::clamp(wanted * 0.4, -fastest, fastest);
    turnRate_ = approach(turnRate_, rate, seconds, 0.8);
    heading_ = bearing360(heading_ + turnRate_ * seconds);
    // The rudder turns the boat and holds against its wish to round up into the wind when it heels.
    const double weatherHelm = -0.15 * std::abs(heel_) * (trueWindAngle > 0.0 ? 1.0 : -1.0);
    rudder_ = std::clamp(turnRate_ * 12.0 / std::max(3.0, speed_) + weatherHelm, -35.0, 35.0);
}

void Boat::drive(double seconds, const Helm& helm, double trueWindAngle, double trueWindSpeed) noexcept {
    constexpr double kSecondsOfGybe = 6.0;
    double target = polarSpeed(trueWindAngle, trueWindSpeed) * speedFactor_ * std::clamp(helm.power, 0.0, 1.0);
    if (sinceGybe_ < kSecondsOfGybe) target *= 0.6; // the crew is busy with the sails
    speed_ = approach(speed_, target, seconds, target > speed_ ? 9.0 : 14.0);
    const double rudderBrake = 0.0009 * turnRate_ * turnRate_; // knots a second, at full turn about a tenth
    speed_ = std::max(0.0, speed_ - rudderBrake * speed_ / 6.0 * seconds);
}

void Boat::lean(double seconds, const Surroundings& surroundings, const Helm& helm) noexcept {
    const Vector wind = apparentWind(surroundings);
    const double speed = wind.length();
    const double sideForce = speed * speed * std::sin(radians(angleOffBow(wind))) * std::clamp(helm.power, 0.2, 1.0);
    heel_ = approach(heel_, -30.0 * std::tanh(0.005 * sideForce), seconds, 1.5);
    // Keels lift with the square of the speed.
    const double drift = 9.0 * heel_ / std::max(9.0, speed_ * speed_);
    leeway_ = approach(leeway_, std::clamp(drift, -12.0, 12.0), seconds, 2.0);
}

} // namespace tallowmere::simulate

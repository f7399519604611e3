// A yacht: what wind, current and helm do to it.
#pragma once

#include "tools/simulate/vector.hpp"

namespace tallowmere::simulate {

/// The weather where the boat is, knots over the ground.
struct Surroundings {
    Vector air;
    Vector current;
};

/// What the crew does.
struct Helm {
    double heading = 0.0; // to turn to, degrees true
    int turn = 0;         // which way: -1 to port, 1 to starboard, 0 the shorter
    double power = 1.0;   // of the sails: 1 well trimmed, 0 flapping
};

class Boat {
  public:
    /// position       metres from the middle of the start line
    /// speedFactor    of this boat's polar
    Boat(Vector position, double heading, double speed, double speedFactor) noexcept;

    void step(double seconds, const Surroundings& surroundings, const Helm& helm) noexcept;

    [[nodiscard]] Vector position() const noexcept { return position_; }
    [[nodiscard]] double heading() const noexcept { return heading_; }         // degrees true
    [[nodiscard]] double boatSpeed() const noexcept { return speed_; }         // knots, along the keel
    [[nodiscard]] double heel() const noexcept { return heel_; }               // degrees, to starboard positive
    [[nodiscard]] double leeway() const noexcept { return leeway_; }           // degrees, to starboard positive
    [[nodiscard]] double turnRate() const noexcept { return turnRate_; }       // degrees a second
    [[nodiscard]] double rudder() const noexcept { return rudder_; }           // degrees, turning to starboard positive
    [[nodiscard]] double distanceSailed() const noexcept { return distance_; } // nautical miles through the water

    /// Knots.
    [[nodiscard]] Vector throughWater() const noexcept;
    [[nodiscard]] Vector overGround(const Surroundings& surroundings) const noexcept {
        return throughWater() + surroundings.current;
    }
    /// The wind that the water feels, as the air's movement.
    [[nodiscard]] static Vector trueWind(const Surroundings& surroundings) noexcept {
        return surroundings.air - surroundings.current;
    }
    /// The wind that the moving boat feels.
    [[nodiscard]] Vector apparentWind(const Surroundings& surroundings) const noexcept {
        return surroundings.air - overGround(surroundings);
    }
    /// Degrees off the bow from which a movement of air comes, starboard positive.
    [[nodiscard]] double angleOffBow(Vector air) const noexcept {
        return signed180(air.direction() + 180.0 - heading_);
    }

  private:
    void turn(double seconds, const Helm& helm, double trueWindAngle) noexcept;
    void drive(double seconds, const Helm& helm, double trueWindAngle, double trueWindSpeed) noexcept;
    void lean(double seconds, const Surroundings& surroundings, const Helm& helm) noexcept;

    Vector position_;
    double heading_;
    double speed_;
    double speedFactor_;
    double heel_ = 0.0;
    double leeway_ = 0.0;
    double turnRate_ = 0.0;
    double rudder_ = 0.0;
    double distance_ = 0.0;
    double sinceGybe_ = 1000.0; // seconds since the boom came over
};

} // namespace tallowmere::simulate

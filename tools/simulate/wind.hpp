// A sea breeze that swings and gusts.
#pragma once

#include "tools/simulate/chance.hpp"
#include "tools/simulate/vector.hpp"

namespace tallowmere::simulate {

/// The wind over the ground, the same in the whole race area.
class Wind {
  public:
    static constexpr double kMeanDirection = 225.0;

    explicit Wind(Chance& chance);

    void step(double seconds);

    /// Where it comes from, degrees true.
    [[nodiscard]] double direction() const noexcept;
    [[nodiscard]] double speed() const noexcept; // knots
    /// The movement of the air, knots.
    [[nodiscard]] Vector velocity() const noexcept { return polarVector(direction() + 180.0, speed()); }

  private:
    Chance& chance_;
    double time_ = 0.0;
    double slowPhase_;
    double fastPhase_;
    double gustPhase_;
    double directionNoise_ = 0.0; // degrees
    double speedNoise_ = 0.0;     // knots
};

} // namespace tallowmere::simulate

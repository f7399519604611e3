// Who steers: before the start, to the line, and round the marks.
#pragma once

#include "tools/simulate/boat.hpp"

namespace tallowmere::simulate {

/// Metres from the middle of the start line.
struct Course {
    double windDirection;  // that the line was laid for, degrees true
    double lineLength;     // metres
    double beatLength;     // metres, from the line to the windward mark
    double secondsToStart; // from the beginning to the gun

    [[nodiscard]] Vector upwind(double metres) const noexcept { return polarVector(windDirection, metres); }
    /// A place in the line; from -0.5 at its port end to 0.5 at its starboard end, as seen looking upwind.
    [[nodiscard]] Vector onLine(double share) const noexcept {
        return polarVector(windDirection + 90.0, share * lineLength);
    }
    [[nodiscard]] Vector windwardMark() const noexcept { return upwind(beatLength); }
    [[nodiscard]] Vector leewardMark() const noexcept { return upwind(60.0); }
};

class Helmsman {
  public:
    /// slot      where in the line to start, as Course::onLine takes it
    /// patience  degrees of header before tacking
    Helmsman(const Course& course, double slot, double patience) noexcept
        : course_(course), slot_(slot), patience_(patience) {}

    /// time   seconds since the beginning
    [[nodiscard]] Helm steer(const Boat& boat, const Surroundings& surroundings, double time) noexcept;

  private:
    [[nodiscard]] Helm waitBelowLine(const Boat& boat, double windFrom) noexcept;
    [[nodiscard]] Helm approachLine(const Boat& boat, double windFrom, double secondsLeft) noexcept;
    [[nodiscard]] Helm race(const Boat& boat, double windFrom, double time) noexcept;
    [[nodiscard]] Helm sailTo(const Boat& boat, double windFrom, Vector target, double time) noexcept;
    void considerShift(double windFrom, bool upwind, double time) noexcept;

    Course course_;
    double slot_;
    double patience_;
    int tack_ = 1;  // 1: wind from starboard
    int reach_ = 1; // side of the reaches before the start
    int turn_ = 0;  // way of the turn between two of them
    bool upwindLeg_ = true;
    double lastTurn_ = 0.0;
    double usualWind_ = 0.0; // the direction that shifts are judged against
    bool knowsWind_ = false;
};

} // namespace tallowmere::simulate

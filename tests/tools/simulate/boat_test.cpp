// How a simulated yacht answers wind and helm.
#include "tools/simulate/boat.hpp"
#include "tools/simulate/polar.hpp"
#include "tools/simulate/wind.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace tallowmere::simulate {
namespace {

TEST(Angles, AreHeldInTheirCircle) {
    EXPECT_EQ(bearing360(0.0), 0.0);
    EXPECT_EQ(bearing360(360.0), 0.0);
    EXPECT_EQ(bearing360(-90.0), 270.0);
    EXPECT_EQ(bearing360(725.0), 5.0);
    EXPECT_EQ(bearing360(-1e-20), 0.0);
    EXPECT_EQ(signed180(180.0), 180.0);
    EXPECT_EQ(signed180(181.0), -179.0);
    EXPECT_EQ(signed180(-180.0), 180.0);
    EXPECT_EQ(signed180(-45.0), -45.0);
}

TEST(Vectors, PointWhereTheyGo) {
    const Vector east = polarVector(90.0, 5.0);
    EXPECT_NEAR(east.east, 5.0, 1e-12);
    EXPECT_NEAR(east.north, 0.0, 1e-12);
    EXPECT_NEAR(polarVector(217.0, 3.0).direction(), 217.0, 1e-9);
    EXPECT_NEAR(polarVector(217.0, 3.0).length(), 3.0, 1e-12);
}

TEST(Polar, IsThatOfASailingYacht) {
    EXPECT_EQ(polarSpeed(0.0, 15.0), 0.0);
    EXPECT_EQ(polarSpeed(90.0, 0.0), 0.0);
    EXPECT_EQ(polarSpeed(-60.0, 12.0), polarSpeed(60.0, 12.0));
    EXPECT_GT(polarSpeed(90.0, 12.0), polarSpeed(42.0, 12.0));
    EXPECT_GT(polarSpeed(110.0, 12.0), polarSpeed(180.0, 12.0));
    EXPECT_GT(polarSpeed(42.0, 16.0), polarSpeed(42.0, 8.0));
    EXPECT_LT(polarSpeed(110.0, 100.0), 10.0) << "the hull sets a limit";
}

TEST(Polar, BestAnglesAreBestUpwindAndDownwind) {
    const auto towardsWind = [](double angle) { return polarSpeed(angle, 12.0) * std::cos(radians(angle)); };
    double bestUp = 0.0;
    double bestDown = 0.0;
    for (double angle = 0.0; angle <= 180.0; angle += 1.0) {
        bestUp = std::max(bestUp, towardsWind(angle));
        bestDown = std::min(bestDown, towardsWind(angle));
    }
    EXPECT_GT(towardsWind(kBeatAngle), 0.97 * bestUp);
    EXPECT_LT(towardsWind(kRunAngle), 0.97 * bestDown);
}

class Sailing : public testing::Test {
  protected:
    void sail(double seconds, Helm helm) {
        for (double time = 0.0; time < seconds; time += 0.2) {
            boat.step(0.2, surroundings, helm);
            slowest = std::min(slowest, boat.boatSpeed());
        }
    }
    /// A course with the wind that many degrees from starboard.
    [[nodiscard]] static Helm windOnStarboard(double angle) { return {.heading = bearing360(0.0 - angle)}; }

    Surroundings surroundings{polarVector(180.0, 13.0), {}}; // wind from the north
    Boat boat{{}, bearing360(-kBeatAngle), 6.0, 1.0};
    double slowest = 100.0;
};

TEST_F(Sailing, SteadySpeedIsThePolars) {
    sail(120.0, windOnStarboard(kBeatAngle));
    EXPECT_NEAR(boat.boatSpeed(), polarSpeed(kBeatAngle, 13.0), 0.05);
}

TEST_F(Sailing, WindFromStarboardHeelsAndPushesToPort) {
    sail(60.0, windOnStarboard(kBeatAngle));
    EXPECT_LT(boat.heel(), -10.0);
    EXPECT_GT(boat.heel(), -30.0);
    EXPECT_LT(boat.leeway(), -1.0);
    EXPECT_GT(boat.leeway(), -8.0);
    EXPECT_LT(signed180(boat.throughWater().direction() - boat.heading()), -1.0);
}

TEST_F(Sailing, TackCostsSpeedThatComesBack) {
    sail(60.0, windOnStarboard(kBeatAngle));
    const double before = boat.boatSpeed();
    slowest = before;
    sail(20.0, windOnStarboard(-kBeatAngle));
    EXPECT_GT(boat.angleOffBow(Boat::trueWind(surroundings)), -50.0);
    EXPECT_LT(boat.angleOffBow(Boat::trueWind(surroundings)), -35.0);
    EXPECT_LT(slowest, 0.8 * before);
    EXPECT_GT(slowest, 0.3 * before);
    sail(60.0, windOnStarboard(-kBeatAngle));
    EXPECT_NEAR(boat.boatSpeed(), before, 0.1);
    EXPECT_GT(boat.heel(), 10.0);
}

TEST_F(Sailing, GybeCostsLessThanATack) {
    sail(90.0, windOnStarboard(kRunAngle));
    const double before = boat.boatSpeed();
    slowest = before;
    sail(20.0, windOnStarboard(-kRunAngle));
    EXPECT_LT(slowest, 0.95 * before);
    EXPECT_GT(slowest, 0.5 * before);
}

TEST_F(Sailing, ApparentWindIsTrueWindAgainstTheBoatsMovement) {
    sail(60.0, windOnStarboard(90.0));
    const double expected = std::hypot(13.0, boat.throughWater().length());
    EXPECT_NEAR(boat.apparentWind(surroundings).length(), expected, 0.5); // leeway turns it a little
    const double angle = boat.angleOffBow(boat.apparentWind(surroundings));
    EXPECT_GT(angle, 45.0);
    EXPECT_LT(angle, 75.0);
}

TEST_F(Sailing, CurrentCarriesTheBoatButIsNotFelt) {
    Boat still = boat;
    surroundings.current = {1.0, 0.0};
    surroundings.air = surroundings.air + surroundings.current; // the same wind over the water
    const Surroundings noCurrent{polarVector(180.0, 13.0), {}};
    for (int count = 0; count < 300; ++count) {
        boat.step(0.2, surroundings, windOnStarboard(kBeatAngle));
        still.step(0.2, noCurrent, windOnStarboard(kBeatAngle));
    }
    EXPECT_NEAR(boat.boatSpeed(), still.boatSpeed(), 1e-9);
    const Vector carried = boat.position() - still.position();
    EXPECT_NEAR(carried.east, 60.0 * kMetresPerSecondPerKnot, 1e-6);
    EXPECT_NEAR(carried.north, 0.0, 1e-6);
}

TEST(WindModel, SwingsAndGustsWithinReason) {
    Chance chance(7);
    Wind wind(chance);
    double least = 100.0;
    double most = 0.0;
    double left = 0.0;
    double right = 0.0;
    for (int second = 0; second < 7200; ++second) {
        wind.step(1.0);
        least = std::min(least, wind.speed());
        most = std::max(most, wind.speed());
        const double shift = signed180(wind.direction() - Wind::kMeanDirection);
        left = std::min(left, shift);
        right = std::max(right, shift);
    }
    EXPECT_GT(least, 6.0);
    EXPECT_LT(most, 22.0);
    EXPECT_GT(most - least, 4.0);
    EXPECT_LT(left, -5.0);
    EXPECT_GT(left, -25.0);
    EXPECT_GT(right, 5.0);
    EXPECT_LT(right, 25.0);
}

} // namespace
} // namespace tallowmere::simulate

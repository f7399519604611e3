// The fleet starts when the gun goes, and races.
#include "tools/simulate/polar.hpp"
#include "tools/simulate/race.hpp"

#include <gtest/gtest.h>

namespace tallowmere::simulate {
namespace {

class SeededRace : public testing::TestWithParam<std::uint32_t> {
  protected:
    void sailUntil(double time) {
        while (race.time() < time - 0.5) race.step();
    }
    /// Metres above the start line.
    [[nodiscard]] double aboveLine(std::size_t index) const {
        const Vector position = race.boat(index).position();
        const Vector up = race.course().upwind(1.0);
        return position.east * up.east + position.north * up.north;
    }
    /// Degrees, wind from starboard positive.
    [[nodiscard]] double trueWindAngle(std::size_t index) const {
        return race.boat(index).angleOffBow(Boat::trueWind(race.surroundings()));
    }

    Race race{GetParam()};
};

TEST_P(SeededRace, BeforeTheStartTheFleetReachesToAndFroBelowTheLine) {
    std::vector<int> turns(race.boatCount());
    std::vector<double> before(race.boatCount());
    for (std::size_t index = 0; index < race.boatCount(); ++index) before[index] = trueWindAngle(index);
    while (race.time() < kSecondsToStart - 20.0) {
        race.step();
        for (std::size_t index = 0; index < race.boatCount(); ++index) {
            EXPECT_LT(aboveLine(index), 10.0) << "over the line early: boat " << index << " at " << race.time();
            EXPECT_LT(race.boat(index).position().length(), 600.0);
            if (trueWindAngle(index) * before[index] < 0.0) ++turns[index];
            before[index] = trueWindAngle(index);
        }
    }
    for (std::size_t index = 0; index < race.boatCount(); ++index) EXPECT_GE(turns[index], 1) << index;
}

TEST_P(SeededRace, AtTheGunTheFleetIsOnTheLineWithSpeed) {
    sailUntil(kSecondsToStart);
    for (std::size_t index = 0; index < race.boatCount(); ++index) {
        EXPECT_GT(aboveLine(index), -60.0) << index;
        EXPECT_LT(aboveLine(index), 15.0) << index;
        EXPECT_GT(race.boat(index).boatSpeed(), 2.0) << index;
    }
}

TEST_P(SeededRace, AfterTheGunTheFleetBeats) {
    sailUntil(kSecondsToStart + 60.0);
    for (std::size_t index = 0; index < race.boatCount(); ++index) {
        EXPECT_GT(aboveLine(index), 25.0) << index;
        EXPECT_NEAR(std::abs(trueWindAngle(index)), kBeatAngle, 20.0) << index;
        EXPECT_GT(race.boat(index).boatSpeed(), 4.0) << index;
    }
}

TEST_P(SeededRace, EveryBoatTacksAndRoundsBothMarks) {
    std::vector<int> tacks(race.boatCount());
    std::vector<int> gybes(race.boatCount());
    std::vector<bool> top(race.boatCount());
    std::vector<bool> bottomAgain(race.boatCount());
    sailUntil(kSecondsToStart);
    std::vector<double> before(race.boatCount(), 1.0);
    while (race.time() < kSecondsToStart + 2400.0) {
        race.step();
        for (std::size_t index = 0; index < race.boatCount(); ++index) {
            const double angle = trueWindAngle(index);
            if (angle * before[index] < 0.0) ++(std::abs(angle) < 90.0 ? tacks : gybes)[index];
            before[index] = angle;
            const Vector position = race.boat(index).position();
            if ((position - race.course().windwardMark()).length() < 60.0) top[index] = true;
            if (top[index] && (position - race.course().leewardMark()).length() < 60.0) bottomAgain[index] = true;
        }
    }
    for (std::size_t index = 0; index < race.boatCount(); ++index) {
        EXPECT_GE(tacks[index], 1) << index;
        EXPECT_GE(gybes[index], 1) << index;
        EXPECT_TRUE(top[index]) << index;
        EXPECT_TRUE(bottomAgain[index]) << index;
    }
}

TEST_P(SeededRace, AnHourLaterEverythingIsStillWithinReason) {
    for (int second = 0; second < 3600; ++second) {
        race.step();
        for (std::size_t index = 0; index < race.boatCount(); ++index) {
            const Boat& boat = race.boat(index);
            ASSERT_LT(boat.position().length(), 4000.0) << index << " at " << race.time();
            ASSERT_GE(boat.boatSpeed(), 0.0);
            ASSERT_LT(boat.boatSpeed(), 11.0);
            ASSERT_LE(std::abs(boat.heel()), 30.0);
            ASSERT_LE(std::abs(boat.rudder()), 35.0);
            ASSERT_LT(std::abs(boat.turnRate()), 13.0);
            ASSERT_GT(race.depthAt(boat.position()), 5.0);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, SeededRace, testing::Values(1U, 2U, 3U, 42U, 4'294'967'295U));

} // namespace
} // namespace tallowmere::simulate

#include "tools/commands/write_monitor.hpp"

#include "tests/tools/cli/command_fixture.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <utility>

namespace tallowmere::test {
namespace {

using tools::jumpsBetweenTwoLevels;
using tools::WriteMonitor;
using tools::WriteRate;

std::vector<double> alternating(double low, double high, std::size_t count) {
    std::vector<double> values;
    for (std::size_t i = 0; i < count; ++i) values.push_back(i % 2 == 0 ? low : high);
    return values;
}

TEST(TwoLevels, ValuesThatAlternateJump) {
    EXPECT_TRUE(jumpsBetweenTwoLevels(alternating(6.0, 7.0, 12), 0.05));
    EXPECT_FALSE(jumpsBetweenTwoLevels(alternating(6.0, 7.0, 11), 0.05)) << "too few to tell";
    EXPECT_FALSE(jumpsBetweenTwoLevels({}, 0.05));
}

TEST(TwoLevels, EachLevelMayWander) {
    std::vector<double> values = alternating(6.0, 7.0, 16);
    for (std::size_t i = 0; i < values.size(); ++i) values[i] += 0.015 * static_cast<double>(i % 5);
    EXPECT_TRUE(jumpsBetweenTwoLevels(values, 0.05));
}

TEST(TwoLevels, LevelsMayMoveFartherThanTheyAreApart) {
    std::vector<double> values;
    for (int i = 0; i < 64; ++i) values.push_back(6.0 + 3.0 * std::sin(i * 0.02) + (i % 2 == 0 ? 0.0 : 0.8));
    EXPECT_TRUE(jumpsBetweenTwoLevels(values, 0.05));
}

TEST(TwoLevels, ASlowWriterBesideAFastOneIsSeen) {
    for (const auto& [most, few] : {std::pair(6.0, 7.0), std::pair(7.0, 6.0)}) {
        std::vector<double> values;
        for (int i = 0; i < 128; ++i) values.push_back(i % 11 == 10 ? few : most + 0.01 * (i % 7));
        EXPECT_TRUE(jumpsBetweenTwoLevels(values, 0.05));
    }
}

TEST(TwoLevels, StepsOfOneWriterAreNone) {
    std::vector<double> values(128, 6.0);
    std::fill(values.begin() + 64, values.end(), 7.0);
    EXPECT_FALSE(jumpsBetweenTwoLevels(values, 0.05)) << "one step";
    values[30] = values[60] = 7.0; // five changes
    EXPECT_FALSE(jumpsBetweenTwoLevels(values, 0.05)) << "and two outliers";
    values[50] = 7.0; // seven
    EXPECT_TRUE(jumpsBetweenTwoLevels(values, 0.05)) << "an outlier at one level again and again is a second writer";
    std::vector<double> stairs;
    for (int i = 0; i < 128; ++i) stairs.push_back(i / 8); // NOLINT(bugprone-integer-division): stairs
    EXPECT_FALSE(jumpsBetweenTwoLevels(stairs, 0.05));
}

TEST(TwoLevels, AChangeOfBothHidesThemForShort) {
    std::vector<double> values;
    for (int i = 0; i < 128; ++i) values.push_back((i < 100 ? -30.0 : 30.0) + (i % 2 == 0 ? 0.0 : 4.0));
    EXPECT_TRUE(jumpsBetweenTwoLevels(values, 0.5));
}

TEST(TwoLevels, NoiseOfOneWriterIsNone) {
    std::mt19937 random(1);
    const auto noise = [&] { return (static_cast<double>(random()) - 2147483648.0) / 2147483648.0; };
    const auto marked = [](auto next, double leastGap = 0.05) {
        int count = 0;
        for (int run = 0; run < 500; ++run) {
            std::vector<double> values(128);
            std::ranges::generate(values, next);
            count += jumpsBetweenTwoLevels(values, leastGap) ? 1 : 0;
        }
        return count;
    };
    EXPECT_EQ(marked(noise), 0) << "level";
    EXPECT_EQ(marked([&] { return noise() + noise() + noise() + noise(); }), 0) << "bell-shaped";
    EXPECT_EQ(marked([&] { return std::tan(1.57 * noise()); }), 0) << "with far outliers";
    EXPECT_EQ(marked([&, at = 6.0]() mutable { return at += 0.2 * noise(); }), 0) << "a walk";
    EXPECT_EQ(marked([&, i = 0]() mutable { return std::sin(0.3 * ++i) + 0.2 * noise(); }), 0) << "a wave";
    EXPECT_EQ(marked([&] { return std::round(3.0 * noise()); }, 5.0), 0) << "in steps of the last decimal";
}

TEST(TwoLevels, ASensorBetweenTwoReadingsIsNone) {
    EXPECT_FALSE(jumpsBetweenTwoLevels(alternating(6.01, 6.02, 16), 0.05));
}

TEST(TwoLevels, OneMovingWriterIsNone) {
    std::vector<double> wave;
    std::vector<double> ramp;
    for (int i = 0; i < 16; ++i) {
        wave.push_back(10.0 * std::sin(i));
        ramp.push_back(i);
    }
    EXPECT_FALSE(jumpsBetweenTwoLevels(wave, 0.05));
    EXPECT_FALSE(jumpsBetweenTwoLevels(ramp, 0.05));
    EXPECT_FALSE(jumpsBetweenTwoLevels(std::vector<double>(16, 6.0), 0.05));
}

TEST(TwoLevels, WhatIsNoNumberIsNone) {
    std::vector<double> values = alternating(6.0, 7.0, 16);
    for (const double bad :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 32767.0}) {
        values[5] = bad;
        EXPECT_FALSE(jumpsBetweenTwoLevels(values, 0.05));
    }
    EXPECT_FALSE(jumpsBetweenTwoLevels(alternating(-1.7e308, 1.7e308, 16), 0.05)) << "the gap overflows";
}

class WriteMonitorTest : public CommandTest {
  protected:
    /// Looks 20 times a second for so many seconds; `write` is called before each look with its number.
    template <class Write> void look(int seconds, Write write) {
        for (int i = 0; i < 20 * seconds; ++i) {
            passSeconds(0.05);
            write(i);
            monitor.look(area(), 0, machine.now);
        }
    }
    WriteMonitor monitor;
};

TEST_F(WriteMonitorTest, RateIsWhatWasSeenInFiveSeconds) {
    store(ZAN_BSP, 6);
    look(10, [this](int i) {
        if (i % 10 == 0) store(ZAN_BSP, 6 + i * 0.01); // twice a second
    });
    const WriteRate rate = monitor.of(ZAN_BSP);
    EXPECT_TRUE(rate.known);
    EXPECT_NEAR(rate.perSecond, 2.0, 0.21); // a write more or less at the window's ends
    EXPECT_FALSE(rate.atLeast);
    EXPECT_FALSE(rate.twoLevels);
    EXPECT_EQ(monitor.of(ZAN_AWA).perSecond, 0.0);
}

TEST_F(WriteMonitorTest, RateIsUnknownForASecond) {
    store(ZAN_BSP, 6);
    EXPECT_FALSE(monitor.of(ZAN_BSP).known);
    monitor.look(area(), 0, machine.now);
    EXPECT_FALSE(monitor.of(ZAN_BSP).known);
    look(1, [](int) {});
    EXPECT_TRUE(monitor.of(ZAN_BSP).known);
    EXPECT_FALSE(monitor.of(kChannelCount).known);
}

TEST_F(WriteMonitorTest, NewStampsAtHalfOfTheLooksMeanAtLeast) {
    store(ZAN_BSP, 6);
    look(5, [this](int) {
        for (int j = 0; j < 5; ++j) {
            passSeconds(0.001);
            store(ZAN_BSP, 6);
        }
    });
    EXPECT_TRUE(monitor.of(ZAN_BSP).atLeast);
    EXPECT_LE(monitor.of(ZAN_BSP).perSecond, 21.0); // of a hundred a second
}

TEST_F(WriteMonitorTest, TwoWritersAreMarked) {
    store(ZAN_BSP, 6);
    look(5, [this](int i) {
        if (i % 5 == 0) store(ZAN_BSP, i % 10 == 0 ? 6.0 : 7.5);
    });
    EXPECT_TRUE(monitor.of(ZAN_BSP).twoLevels);
}

TEST_F(WriteMonitorTest, WritersOfVeryDifferentRatesAreMarked) {
    for (const auto& [fast, slow] : {std::pair(6.0, 7.5), std::pair(7.5, 6.0)}) {
        monitor.clear();
        store(ZAN_BSP, 6);
        look(15, [&, fast = fast, slow = slow](int i) {
            if (i % 2 == 0) store(ZAN_BSP, fast + 0.01 * (i % 6)); // 10 Hz
            if (i % 20 == 1) store(ZAN_BSP, slow);                 // 1 Hz, seen until the other writes again
        });
        EXPECT_TRUE(monitor.of(ZAN_BSP).twoLevels) << fast;
    }
}

TEST_F(WriteMonitorTest, OneWriterThatTacksIsNotMarked) {
    store(ZAN_AWA, -30);
    look(30, [&](int i) { store(ZAN_AWA, (i < 300 ? -30 : 30) + 0.3 * (i % 9)); });
    EXPECT_FALSE(monitor.of(ZAN_AWA).twoLevels);
}

TEST_F(WriteMonitorTest, AnglesEitherSideOfNorthAreOneLevel) {
    store(ZAN_HDG, 359.9);
    look(5, [this](int i) {
        if (i % 5 == 0) store(ZAN_HDG, i % 10 == 0 ? 359.9 : 0.1);
    });
    EXPECT_FALSE(monitor.of(ZAN_HDG).twoLevels);
    monitor.clear();
    look(5, [this](int i) {
        if (i % 5 == 0) store(ZAN_HDG, i % 10 == 0 ? 350 : 10);
    });
    EXPECT_TRUE(monitor.of(ZAN_HDG).twoLevels) << "with twenty degrees between them they are two";
}

TEST_F(WriteMonitorTest, AClockSetBackBeginsAnew) {
    store(ZAN_BSP, 6);
    look(5, [this](int) { store(ZAN_BSP, 6); });
    passSeconds(-3600);
    monitor.look(area(), 0, machine.now);
    EXPECT_FALSE(monitor.of(ZAN_BSP).known);
}

TEST_F(WriteMonitorTest, HostileSectionIsLookedAt) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        fillWithNoise(area(), seed);
        passSeconds(0.2);
        monitor.look(area(), static_cast<BoatIndex>(seed), machine.now);
    }
    for (ChannelIndex channel = 0; channel < kChannelCount; ++channel) (void)monitor.of(channel);
}

} // namespace
} // namespace tallowmere::test

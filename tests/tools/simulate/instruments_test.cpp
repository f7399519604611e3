// What is sent is whole, agrees with the race, and agrees with itself.
#include "tools/feed/feed.hpp"
#include "tools/nmea/line_splitter.hpp"
#include "tools/simulate/instruments.hpp"

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace tallowmere::simulate {
namespace {

constexpr std::int64_t kTicks = 134'082'431'990'000'000; // 2025-11-21 23:59:59 UTC
constexpr std::int64_t kTicksPerSecond = 10'000'000;

class Channels final : public feed::ChannelSink {
  public:
    std::map<std::pair<BoatIndex, ChannelIndex>, double> values;

    bool write(ChannelIndex channel, double value, BoatIndex boat) override {
        values[{boat, channel}] = value;
        return true;
    }
    [[nodiscard]] std::optional<double> read(ChannelIndex) const override { return std::nullopt; }
    [[nodiscard]] std::optional<BoatIndex> boatFor(std::uint32_t mmsi) override {
        for (std::size_t rival = 1; rival <= kRivals; ++rival)
            if (mmsiOf(rival) == mmsi) return static_cast<BoatIndex>(rival);
        return std::nullopt;
    }
};

class Instruments : public testing::Test {
  protected:
    void second() {
        race.step();
        ticks += kTicksPerSecond;
        const std::string text = linesOf(race, ticks);
        std::string_view rest = text;
        while (const auto line = splitter.next(rest)) feed.take(*line);
        EXPECT_FALSE(splitter.finish()) << "every line ends";
    }
    [[nodiscard]] double value(ChannelIndex channel, BoatIndex boat = 0) const {
        const auto found = channels.values.find({boat, channel});
        return found == channels.values.end() ? NO_VALUE : found->second;
    }

    Race race{1};
    Channels channels;
    feed::Feed feed{channels};
    nmea::LineSplitter splitter;
    std::int64_t ticks = kTicks;
};

TEST_F(Instruments, EveryLineIsUsedAndEveryValuePlausible) {
    for (int count = 0; count < 600; ++count) second();
    const feed::FeedCounts& counts = feed.counts();
    EXPECT_EQ(counts.of(nmea::LineKind::Sentence), counts.lines);
    EXPECT_TRUE(counts.unknown.empty());
    EXPECT_EQ(counts.invalid + counts.implausible + counts.refused + counts.withoutVariation, 0U);
    EXPECT_EQ(counts.aisDamaged + counts.aisNoRoom, 0U);
    EXPECT_EQ(counts.boats, kRivals);
    for (const char* const type : {"RMC", "GGA", "VHW", "HDG", "MWD", "DBT", "XDR", "ROT", "RSA"})
        EXPECT_EQ(counts.used.at(type), 600U) << type;
    EXPECT_EQ(counts.used.at("MWV"), 1200U);
    EXPECT_EQ(counts.used.at("MTW"), 120U);
    EXPECT_EQ(counts.used.at("VLW"), 120U);
}

TEST_F(Instruments, LinesAreNoLongerThanTheStandardAllows) {
    for (int count = 0; count < 300; ++count) {
        race.step();
        const std::string text = linesOf(race, ticks);
        std::string_view rest = text;
        while (const auto line = splitter.next(rest)) EXPECT_LE(line->text.size(), 80U) << line->text;
    }
}

TEST_F(Instruments, WindTriangleCloses) {
    for (int count = 0; count < 900; ++count) {
        second();
        const double leeway = race.boat(0).leeway();
        const Vector boat =
            polarVector(0.0, value(ZAN_BSP)) + polarVector(90.0, value(ZAN_BSP) * std::tan(radians(leeway)));
        const Vector apparent = polarVector(value(ZAN_AWA) + 180.0, value(ZAN_AWS));
        const Vector trueWind = polarVector(value(ZAN_TWA) + 180.0, value(ZAN_TWS));
        const Vector rest = trueWind - (apparent + boat);
        ASSERT_LT(rest.length(), 0.05) << "at " << race.time(); // a tenth of a degree and a hundredth of a knot
        ASSERT_NEAR(signed180(value(ZAN_HDG) + value(ZAN_TWA) - value(ZAN_TWD)), 0.0, 0.16);
    }
}

TEST_F(Instruments, CourseAndSpeedAreMovementAndCurrent) {
    for (int count = 0; count < 300; ++count) {
        second();
        const Vector ground = polarVector(value(ZAN_COG), value(ZAN_SOG));
        const Vector expected = race.boat(0).throughWater() + race.surroundings().current;
        ASSERT_LT((ground - expected).length(), 0.02);
    }
}

TEST_F(Instruments, PositionsMoveAsCourseAndSpeedSay) {
    second();
    for (int count = 0; count < 300; ++count) {
        const double latitude = value(ZAN_LAT);
        const double longitude = value(ZAN_LON);
        second();
        const Vector moved = {(value(ZAN_LON) - longitude) * 111'120.0 * std::cos(radians(latitude)),
                              (value(ZAN_LAT) - latitude) * 111'120.0};
        const Vector speed = polarVector(value(ZAN_COG), value(ZAN_SOG) * kMetresPerSecondPerKnot);
        ASSERT_LT((moved - speed).length(), 0.8) << "at " << race.time(); // the course at the second's end
    }
}

TEST_F(Instruments, TheStartAgreesWithLinePositionAndItself) {
    constexpr double kSeconds = 86'400.0;
    constexpr double kMetres = 1852.0;
    constexpr double kMetresPerDegree = 111'120.0;
    for (int count = 0; count < 119; ++count) {
        second();
        ASSERT_NEAR(value(ZAN_TMTOGUN) * kSeconds, kSecondsToStart - race.time(), 0.06);
        ASSERT_NEAR(value(ZAN_BURN), value(ZAN_TMTOGUN) - value(ZAN_TMTOLN), 0.16 / kSeconds) << race.time();

        // Where the own boat stands to the line through both ends, by the positions that were sent.
        const double shrink = std::cos(radians(value(ZAN_PORT_LAT)));
        const auto from = [&](ChannelIndex latitude, ChannelIndex longitude) {
            return Vector{(value(longitude) - value(ZAN_PORT_LON)) * kMetresPerDegree * shrink,
                          (value(latitude) - value(ZAN_PORT_LAT)) * kMetresPerDegree};
        };
        const Vector line = from(ZAN_STBD_LAT, ZAN_STBD_LON);
        const Vector boat = from(ZAN_LAT, ZAN_LON);
        EXPECT_NEAR(line.length(), race.course().lineLength, 0.5);
        EXPECT_NEAR(signed180(line.direction() - 90.0 - value(ZAN_LNSQWIND)), 0.0, 0.2);
        const double below = (line.east * boat.north - line.north * boat.east) / line.length();
        EXPECT_NEAR(value(ZAN_BELOWLN) * kMetres, -below, 0.5) << race.time();

        // As far as the boat gets in that time, close-hauled.
        const double speed = value(ZAN_DISTTOLN) * kMetres / (value(ZAN_TMTOLN) * kSeconds);
        if (std::abs(value(ZAN_TMTOLN) * kSeconds) > 10.0) {
            EXPECT_GT(speed, 2.0 * kMetresPerSecondPerKnot) << race.time();
            EXPECT_LT(speed, 9.0 * kMetresPerSecondPerKnot) << race.time();
        }
        EXPECT_GE(std::abs(value(ZAN_DISTTOLN)), std::abs(value(ZAN_BELOWLN)) - 0.2 / kMetres);
        EXPECT_NEAR(signed180(value(ZAN_TWD) - value(ZAN_LNSQWIND)), value(ZAN_BIAS_ANG), 0.16);
        EXPECT_NEAR(value(ZAN_BIASL) * kMetres, line.length() * std::sin(radians(value(ZAN_BIAS_ANG))), 0.6);
    }
}

TEST_F(Instruments, TheDistanceAtTheGunIsWhatTheCourseLeadsTo) {
    while (race.time() < kSecondsToStart - 10.5) second();
    const double closing = (value(ZAN_BELOWLN) - value(ZAN_GUNBLWLN)) / (value(ZAN_TMTOGUN) * 86'400.0);
    const double angle = radians(value(ZAN_COG) - value(ZAN_LNSQWIND));
    EXPECT_NEAR(closing * 3600.0, value(ZAN_SOG) * std::cos(angle), 0.05);
}

TEST_F(Instruments, TheStartEndsAfterTheGun) {
    while (race.time() < kSecondsToStart + 40.5) second();
    EXPECT_NEAR(value(ZAN_TMTOGUN) * 86'400.0, -41.0, 1.1);
    channels.values.clear();
    second();
    EXPECT_EQ(value(ZAN_BELOWLN), NO_VALUE) << "the boat has started";
    while (race.time() < kSecondsToStart + 61.5) second();
    channels.values.clear();
    second();
    EXPECT_EQ(value(ZAN_TMTOGUN), NO_VALUE);
    EXPECT_EQ(value(ZAN_PORT_LAT), NO_VALUE);
}

TEST_F(Instruments, HeadingIsMagneticOnTheWayAndTrueInTheChannel) {
    second();
    EXPECT_NEAR(value(ZAN_HDG), race.boat(0).heading(), 0.06);
    EXPECT_EQ(value(ZAN_MAGVAR), race.magneticVariation());
}

TEST_F(Instruments, TimeGoesOnOverMidnight) {
    ticks -= kTicksPerSecond;
    second();
    EXPECT_NEAR(value(ZAN_GPS_TIME), 45982.0 + 86'399.0 / 86'400.0, 1e-9); // 21 November 2025
    second();
    EXPECT_NEAR(value(ZAN_GPS_TIME), 45983.0, 1e-9);
}

TEST_F(Instruments, RivalsReportEveryFewSeconds) {
    std::map<BoatIndex, double> lastChange;
    std::map<BoatIndex, std::pair<double, double>> position;
    for (int count = 0; count < 120; ++count) {
        second();
        for (BoatIndex boat = 1; boat <= kRivals; ++boat) {
            const std::pair here(value(ZAN_LAT, boat), value(ZAN_LON, boat));
            if (here != position[boat]) lastChange[boat] = race.time();
            position[boat] = here;
            if (count > 10) {
                EXPECT_LE(race.time() - lastChange[boat], 8.0) << boat;
            }
        }
    }
    for (BoatIndex boat = 1; boat <= kRivals; ++boat) {
        const Place place = race.placeOf(race.boat(boat).position());
        EXPECT_NEAR(value(ZAN_LAT, boat), place.latitude, 5e-4); // five seconds at six knots
        EXPECT_NEAR(value(ZAN_LON, boat), place.longitude, 5e-4);
        EXPECT_EQ(value(ZAN_HDG, boat) != NO_VALUE, boat % 3 != 0) << "some have no compass connected";
    }
    EXPECT_TRUE(feed.counts().aisReports.contains(1));
    EXPECT_TRUE(feed.counts().aisReports.contains(18));
}

TEST_F(Instruments, MmsiNumbersDiffer) {
    std::set<std::uint32_t> numbers;
    for (std::size_t rival = 1; rival <= kRivals; ++rival) numbers.insert(mmsiOf(rival));
    EXPECT_EQ(numbers.size(), kRivals);
}

std::string raceText(std::uint32_t seed, int seconds) {
    Race race(seed);
    std::string text;
    for (int count = 0; count < seconds; ++count) {
        race.step();
        text += linesOf(race, kTicks + count * kTicksPerSecond);
    }
    return text;
}

TEST(Seed, SameSeedGivesTheSameRace) {
    EXPECT_EQ(raceText(5, 300), raceText(5, 300));
}
TEST(Seed, OtherSeedGivesAnotherRace) {
    EXPECT_NE(raceText(5, 30), raceText(6, 30));
}

} // namespace
} // namespace tallowmere::simulate

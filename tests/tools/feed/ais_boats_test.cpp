// Other boats: which one a report belongs to, and what of it is written.
#include "tests/support/new_section.hpp"
#include "tests/tools/feed/fake_sink.hpp"
#include "tools/feed/section_sink.hpp"

namespace tallowmere::feed {
namespace {

constexpr std::uint32_t kMmsi = 235'012'345;

class AisReports : public FeedTest {
  protected:
    void feedReport(const nmea::PositionReport& report) {
        std::string line = nmea::makeVdm(report, 'A');
        line.resize(line.size() - 2);
        feedLine(line);
    }
};

TEST_F(AisReports, PositionCourseSpeedAndHeadingGoToTheBoat) {
    sink.boats[kMmsi] = 7;
    nmea::PositionReport report{.type = 18, .mmsi = kMmsi};
    report.latitude = 50.5;
    report.longitude = -1.25;
    report.cog = 220.5;
    report.sog = 6.4;
    report.heading = 218.0;
    feedReport(report);
    EXPECT_EQ(value(ZAN_LAT, 7), 50.5);
    EXPECT_EQ(value(ZAN_LON, 7), -1.25);
    EXPECT_EQ(value(ZAN_COG, 7), 220.5);
    EXPECT_EQ(value(ZAN_SOG, 7), 6.4);
    EXPECT_EQ(value(ZAN_HDG, 7), 218.0);
    EXPECT_EQ(sink.values.size(), 5U);
    EXPECT_EQ(feed.counts().boats, 1U);
    EXPECT_EQ(feed.counts().aisReports.at(18), 1U);
}

TEST_F(AisReports, WhatIsNotAvailableIsNotWritten) {
    sink.boats[kMmsi] = 7;
    feedReport({.type = 1, .mmsi = kMmsi});
    EXPECT_TRUE(sink.values.empty());
    EXPECT_EQ(feed.counts().boats, 1U);
}

TEST_F(AisReports, OwnBoatAndBoatsWithoutPlaceAreCounted) {
    sink.boats[kMmsi] = 0;
    nmea::PositionReport report{.type = 1, .mmsi = kMmsi};
    report.sog = 5.0;
    feedReport(report);
    report.mmsi = 1;
    feedReport(report);
    EXPECT_TRUE(sink.values.empty());
    EXPECT_EQ(feed.counts().aisOwnBoat, 1U);
    EXPECT_EQ(feed.counts().aisNoRoom, 1U);
    EXPECT_EQ(feed.counts().boats, 0U);
}

TEST_F(AisReports, OtherMessagesAreCountedByType) {
    feedBody("AIVDM,2,1,3,B,55P5TL01VIaAL@7WKO@mBplU@<PDhh00000000,0", '!');
    feedBody("AIVDM,2,2,3,B,1S;AJ::4A80?4i@E53,2", '!');
    feedBody("AIVDM,1,1,,A,15Ml7W,0", '!');
    EXPECT_EQ(feed.counts().aisNotUsed.at(5), 1U);
    EXPECT_EQ(feed.counts().aisParts, 1U);
    EXPECT_EQ(feed.counts().aisDamaged, 1U);
    EXPECT_EQ(feed.counts().used.at("VDM"), 3U);
}

class BoatsOfTheSection : public testing::Test {
  protected:
    BoatsOfTheSection() { initialiseArea(*area); }

    test::MemoryMachine machine;
    test::MemoryPlatform platform{machine};
    std::unique_ptr<SharedArea> area = std::make_unique<SharedArea>();
    ValueStore values{Context{platform, area.get()}};
    SectionSink sink{values};
};

TEST_F(BoatsOfTheSection, KnownMmsiIsItsBoat) {
    area->boats[42].mmsi = kMmsi;
    area->boats[0].mmsi = 999;
    EXPECT_EQ(sink.boatFor(kMmsi), 42);
    EXPECT_EQ(sink.boatFor(999), 0);
}

TEST_F(BoatsOfTheSection, NewMmsiTakesTheNextFreeBoatForGood) {
    area->boats[1].mmsi = 111;  // named in the boat list
    area->boats[2].hasData = 1; // another program's
    EXPECT_EQ(sink.boatFor(kMmsi), 3);
    EXPECT_EQ(area->boats[3].mmsi, kMmsi);
    EXPECT_EQ(sink.boatFor(kMmsi + 1), 4);
    EXPECT_EQ(sink.boatFor(kMmsi), 3);
}

TEST_F(BoatsOfTheSection, NoneIsLeftAfterNinetyNine) {
    for (std::uint32_t boat = 1; boat < kBoatCount; ++boat) EXPECT_EQ(sink.boatFor(1000 + boat), boat);
    EXPECT_EQ(sink.boatFor(5000), std::nullopt);
    EXPECT_EQ(area->boats[0].mmsi, 0U);
}

TEST_F(BoatsOfTheSection, MmsiZeroIsNoBoat) {
    EXPECT_EQ(sink.boatFor(0), std::nullopt);
}

TEST_F(BoatsOfTheSection, WithoutASectionThereAreNone) {
    ValueStore none{Context{platform, nullptr}};
    SectionSink nowhere{none};
    EXPECT_EQ(nowhere.boatFor(kMmsi), std::nullopt);
    EXPECT_EQ(nowhere.read(ZAN_MAGVAR), std::nullopt);
    EXPECT_FALSE(nowhere.write(ZAN_BSP, 5.0, 0));
}

TEST_F(BoatsOfTheSection, WrittenValuesReadBack) {
    EXPECT_TRUE(sink.write(ZAN_MAGVAR, -3.5, 0));
    EXPECT_EQ(sink.read(ZAN_MAGVAR), -3.5);
    EXPECT_FALSE(sink.write(ZAN_MAGVAR, NO_VALUE, 0)) << "the feed never clears a channel";
    EXPECT_EQ(sink.read(ZAN_MAGVAR), -3.5);
    EXPECT_EQ(sink.read(ZAN_BSP), std::nullopt);
}

TEST_F(BoatsOfTheSection, BlockedChannelRefuses) {
    area->settings[ZAN_BSP].blocked = 1;
    EXPECT_FALSE(sink.write(ZAN_BSP, 5.0, 0));
}

} // namespace
} // namespace tallowmere::feed

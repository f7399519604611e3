// Real instruments, recorded at sea. What the channels must hold after a number of lines was worked out from
// the lines themselves by a separate script and looked at for plausibility; the counts of whole lines are those
// that the recordings' own description gives.
#include "tests/support/new_section.hpp"
#include "tools/feed/feed.hpp"
#include "tools/feed/section_sink.hpp"
#include "tools/nmea/line_splitter.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

namespace tallowmere::feed {
namespace {

using nmea::LineKind;

constexpr std::uint64_t kAllLines = std::numeric_limits<std::uint64_t>::max();

std::filesystem::path recordingsFolder() {
    const char* const folder = std::getenv("TALLOWMERE_RECORDINGS");
    return folder != nullptr ? folder : TALLOWMERE_RECORDINGS;
}

class Recording : public testing::Test {
  protected:
    Recording() { initialiseArea(*area); }

    void play(const char* name, std::uint64_t lines = kAllLines) {
        std::ifstream file(recordingsFolder() / name, std::ios::binary);
        if (!file) GTEST_SKIP() << name << " is not there: set TALLOWMERE_RECORDINGS to the recordings' folder";
        nmea::LineSplitter splitter;
        std::string piece(4096, '\0');
        while (file.read(piece.data(), 4096), file.gcount() > 0) {
            std::string_view bytes(piece.data(), static_cast<std::size_t>(file.gcount()));
            while (const auto line = splitter.next(bytes)) {
                if (line->number > lines) return;
                feed.take(*line);
            }
        }
        if (const auto line = splitter.finish()) feed.take(*line);
    }

    /// A tolerance for the last digit of a division, far below the last digit that the instruments send.
    void expect(ChannelIndex channel, double expected, BoatIndex boat = 0) const {
        const DoubleResult result = values.recordAsDouble(channel, values.fetch(channel, boat).record);
        EXPECT_NEAR(result.value, expected, 1e-9) << "channel " << channel << " of boat " << boat;
    }
    void expectNone(ChannelIndex channel) const {
        EXPECT_FALSE(values.fetch(channel, 0).holdsValue) << "channel " << channel;
    }

    test::MemoryMachine machine;
    test::MemoryPlatform platform{machine};
    std::unique_ptr<SharedArea> area = std::make_unique<SharedArea>();
    ValueStore values{Context{platform, area.get()}};
    SectionSink sink{values};
    Feed feed{sink};
    const FeedCounts& counts = feed.counts();
};

TEST_F(Recording, RaceStartAfterSixtyLines) {
    play("pacific-cup-start-2008.nmea", 60);
    if (IsSkipped()) return;
    expect(ZAN_BSP, 7.15);
    expect(ZAN_AWA, -80.0);
    expect(ZAN_AWS, 20.4);
    expect(ZAN_DEPTH, 21.3);
    expect(ZAN_SEATEMP, 16.0);
    expect(ZAN_LAT, 37.81306666666667);
    expect(ZAN_LON, -122.44718333333334);
    expect(ZAN_COG, 316.0);
    expect(ZAN_SOG, 8.0);
    expect(ZAN_MAGVAR, 15.0);
    expect(ZAN_GPS_TIME, 39643.82164351852); // 14 July 2008, 19:43:10
    expect(ZAN_GPSMETHOD, 1.0);
    expect(ZAN_GPSNUM, 6.0);
    expect(ZAN_HDOP, 2.0);
    expect(ZAN_ALTITUDE, -18.0);
    expectNone(ZAN_HDG); // four magnetic headings came before the first variation
    EXPECT_EQ(counts.withoutVariation, 4U);
    expect(ZAN_LAT, 37.81844666666667, 1);
    expect(ZAN_LON, -122.31581166666666, 1);
    expect(ZAN_LAT, 37.840025, 2);
    expect(ZAN_LON, -122.44151666666667, 2);
    expect(ZAN_COG, 145.1, 2);
    expect(ZAN_SOG, 24.0, 2); // a ferry
    EXPECT_EQ(area->boats[1].mmsi, 366'806'940U);
    EXPECT_EQ(area->boats[2].mmsi, 366'985'330U);
    EXPECT_EQ(counts.boats, 6U);
    EXPECT_EQ(counts.written, 55U);
}

TEST_F(Recording, RaceStartAfterSixHundredLines) {
    play("pacific-cup-start-2008.nmea", 600);
    if (IsSkipped()) return;
    expect(ZAN_HDG, 322.0); // 307 magnetic, 15 east
    expect(ZAN_BSP, 8.17);
    expect(ZAN_AWA, -66.0);
    expect(ZAN_AWS, 18.0);
    expect(ZAN_DEPTH, 22.7);
    expect(ZAN_COG, 319.0);
    expect(ZAN_SOG, 8.0);
    expect(ZAN_LAT, 37.81366666666667);
    expect(ZAN_LON, -122.44781666666668);
    expect(ZAN_GPS_TIME, 39643.821875); // 19:43:30
    EXPECT_EQ(counts.boats, 33U);
}

TEST_F(Recording, RaceStartIsWhole) {
    play("pacific-cup-start-2008.nmea");
    if (IsSkipped()) return;
    EXPECT_EQ(counts.lines, 59'887U);
    EXPECT_EQ(counts.of(LineKind::Sentence), 59'887U);
    EXPECT_EQ(counts.unknown,
              (std::map<std::string, std::uint64_t>{
                  {"GSA", 2212}, {"GSV", 6634}, {"PGRMT", 37}, {"PSMDCN", 26'574}, {"RSD", 1106}, {"TXT", 65}}));
    EXPECT_EQ(counts.used, (std::map<std::string, std::uint64_t>{{"DBT", 2212},
                                                                 {"GGA", 1106},
                                                                 {"GLL", 1105},
                                                                 {"HDM", 2212},
                                                                 {"MTW", 2211},
                                                                 {"RMC", 1105},
                                                                 {"VDM", 6673},
                                                                 {"VHW", 2212},
                                                                 {"VTG", 1106},
                                                                 {"VWR", 2211},
                                                                 {"ZDA", 1106}}));
    EXPECT_EQ(counts.aisReports, (std::map<int, std::uint64_t>{{1, 4723}, {3, 839}}));
    EXPECT_EQ(counts.aisNotUsed, (std::map<int, std::uint64_t>{{4, 455}, {5, 191}, {8, 127}, {15, 50}, {20, 50}}));
    EXPECT_EQ(counts.aisParts, 238U);
    EXPECT_EQ(counts.boats, 65U);
    EXPECT_EQ(counts.withoutVariation, 4U);
    EXPECT_EQ(counts.invalid + counts.implausible + counts.refused + counts.aisDamaged, 0U);
    EXPECT_EQ(counts.written, 60'162U);
    expect(ZAN_HDG, 295.0);
    expect(ZAN_BSP, 8.04);
    expect(ZAN_AWA, -50.0);
    expect(ZAN_AWS, 24.6);
    expect(ZAN_DEPTH, 1.8);
}

TEST_F(Recording, PassageAfterFortyLines) {
    play("plaka-passage.nmea", 40);
    if (IsSkipped()) return;
    expect(ZAN_BSP, 6.13);
    expect(ZAN_COG, 226.95);
    expect(ZAN_SOG, 5.8);
    expect(ZAN_AWA, -24.0);
    expect(ZAN_AWS, 12.82);
    expect(ZAN_TWA, -43.0);
    expect(ZAN_TWS, 7.58);
    expect(ZAN_DEPTH, 10.46);
    expect(ZAN_LAT, 60.08446666666667);
    expect(ZAN_LON, 23.539016666666665);
    expectNone(ZAN_HDG); // every heading is empty
    expectNone(ZAN_TWD);
    expectNone(ZAN_GPS_TIME); // no date
    expectNone(ZAN_MAGVAR);
    EXPECT_EQ(counts.written, 29U);
}

TEST_F(Recording, PassageIsWhole) {
    play("plaka-passage.nmea");
    if (IsSkipped()) return;
    EXPECT_EQ(counts.lines, 36'000U);
    EXPECT_EQ(counts.of(LineKind::Sentence), 36'000U);
    EXPECT_EQ(counts.used, (std::map<std::string, std::uint64_t>{{"DBT", 2250},
                                                                 {"GLL", 2250},
                                                                 {"HDM", 2250},
                                                                 {"HDT", 4500},
                                                                 {"MWD", 2250},
                                                                 {"MWV", 2250},
                                                                 {"VHW", 2250},
                                                                 {"VTG", 2250},
                                                                 {"VWT", 2250},
                                                                 {"ZDA", 2250}}));
    EXPECT_EQ(counts.unknown, (std::map<std::string, std::uint64_t>{
                                  {"GSV", 2250}, {"VDR", 2250}, {"VPW", 2250}, {"WCV", 2250}, {"XTE", 2250}}));
    EXPECT_EQ(counts.written, 24'750U);
    EXPECT_EQ(counts.invalid + counts.implausible + counts.refused + counts.withoutVariation, 0U);
    expectNone(ZAN_HDG);
}

TEST_F(Recording, DamagedRecordingAfterTwoHundredLines) {
    play("neutron-dance.nmea", 200);
    if (IsSkipped()) return;
    expect(ZAN_GPS_TIME, 42594.79452546296); // 12 August 2016, 19:04:07
    expect(ZAN_LAT, 35.06480166666667);
    expect(ZAN_LON, -76.96773666666667);
    expect(ZAN_SOG, 0.83);
    expect(ZAN_COG, 27.56);
    expect(ZAN_DEPTH, 2.58);
    expect(ZAN_AWA, -23.0);
    expect(ZAN_AWS, 6.38);
    expect(ZAN_GPSNUM, 9.0);
    expect(ZAN_HDOP, 0.9);
    expect(ZAN_ALTITUDE, -5.6);
    expect(ZAN_GEOSEP, -34.8);
    expect(ZAN_DIFFSTN, 0.0);
    expectNone(ZAN_HDG);
    EXPECT_EQ(counts.written, 254U);
}

TEST_F(Recording, DamagedRecordingIsToldApart) {
    play("neutron-dance.nmea");
    if (IsSkipped()) return;
    EXPECT_EQ(counts.lines, 19'493U);
    EXPECT_EQ(counts.of(LineKind::Sentence), 14'593U);
    EXPECT_EQ(counts.of(LineKind::BadChecksum), 939U);
    // 3,961 lines without a checksum at all:
    EXPECT_EQ(counts.of(LineKind::NoChecksum), 3'296U + 48U); // the logger's own "!!VER..." and sentences cut short
    EXPECT_EQ(counts.of(LineKind::Cut), 581U);                // "...F*3,"
    EXPECT_EQ(counts.of(LineKind::Merged), 9U);               // "...100.0*F*", nothing usable in them
    EXPECT_EQ(counts.of(LineKind::Text), 27U);                // "Setup complete.."
    EXPECT_EQ(counts.mergedUsed, 0U);
    EXPECT_EQ(counts.unknown, (std::map<std::string, std::uint64_t>{{"GSA", 59},
                                                                    {"GSV", 34},
                                                                    {"PSRF100", 1},
                                                                    {"PSRF156", 3},
                                                                    {"SBT", 1}, // cut, and right by chance
                                                                    {"VWV", 1},
                                                                    {"VWV2", 1}}));
    EXPECT_EQ(
        counts.used,
        (std::map<std::string, std::uint64_t>{
            {"DBT", 3703}, {"DPT", 5208}, {"GGA", 324}, {"MWV", 1354}, {"RMC", 1450}, {"VHW", 1692}, {"VLW", 762}}));
    ASSERT_EQ(counts.damaged.size(), 3 * FeedCounts::kDamagedKept) << "bad checksum, cut, merged";
    EXPECT_EQ(counts.written, 23'151U);
    EXPECT_EQ(counts.damaged[0].number, 347U);
    EXPECT_EQ(counts.damaged[0].excerpt, "$S,1.37,F*3A");
    expect(ZAN_BSP, 2.84);
    expect(ZAN_DEPTH, 2.5);
    expect(ZAN_AWA, -112.0);
}

TEST_F(Recording, GatewayAfterThirtyLines) {
    play("merrimac-n2kd-0183.nmea", 30);
    if (IsSkipped()) return;
    expect(ZAN_AWA, 88.8);
    expect(ZAN_AWS, 0.41);
    expect(ZAN_MAGVAR, 0.0);
    expect(ZAN_HDG, 186.5);
    expect(ZAN_DEPTH, 0.5);
    EXPECT_EQ(counts.written, 45U);
}

TEST_F(Recording, GatewayIsWhole) {
    play("merrimac-n2kd-0183.nmea");
    if (IsSkipped()) return;
    EXPECT_EQ(counts.lines, 541U);
    EXPECT_EQ(counts.of(LineKind::Sentence), 541U);
    EXPECT_TRUE(counts.unknown.empty());
    EXPECT_EQ(counts.used, (std::map<std::string, std::uint64_t>{
                               {"DBS", 13}, {"DBT", 11}, {"HDG", 123}, {"HDM", 247}, {"MWV", 147}}));
    EXPECT_EQ(counts.withoutVariation, 0U); // the first sentence with a heading brings the variation
    EXPECT_EQ(counts.written, 811U);
    expect(ZAN_AWA, -42.3);
    expect(ZAN_DEPTH, 0.58);
}

} // namespace
} // namespace tallowmere::feed

#include "tools/nmea/encode.hpp"

#include "tools/nmea/field.hpp"
#include "tools/nmea/line_reading.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace tallowmere::nmea {
namespace {

TEST(MakeLine, AddsChecksumAndLineEnd) {
    EXPECT_EQ(makeLine('$', "IIMTW,016,C"), "$IIMTW,016,C*3A\r\n");
}

TEST(Decimal, HasFixedDecimalsAndWidth) {
    EXPECT_EQ(decimal(7.306, 2), "7.31");
    EXPECT_EQ(decimal(7.306, 1, 5), "007.3");
    EXPECT_EQ(decimal(-0.5, 1), "-0.5");
    EXPECT_EQ(decimal(302.0, 0, 3), "302");
    EXPECT_EQ(decimal(std::numeric_limits<double>::quiet_NaN(), 1), "");
    EXPECT_EQ(decimal(1e300, 1), "");
}

TEST(LatitudeFields, NeverHaveSixtyMinutes) {
    EXPECT_EQ(latitudeFields(37.0 + 48.784 / 60.0), "3748.7840,N");
    EXPECT_EQ(latitudeFields(-0.025), "0001.5000,S");
    EXPECT_EQ(latitudeFields(9.99999999), "1000.0000,N");
    EXPECT_EQ(latitudeFields(90.1), ",");
}

TEST(LongitudeFields, HaveThreeDigitsOfDegrees) {
    EXPECT_EQ(longitudeFields(-(122.0 + 26.831 / 60.0)), "12226.8310,W");
    EXPECT_EQ(longitudeFields(0.01), "00000.6000,E");
    EXPECT_EQ(longitudeFields(std::numeric_limits<double>::infinity()), ",");
}

TEST(PositionFieldsRoundTrip, GivesTheSamePosition) {
    for (double degrees = -89.9; degrees < 90.0; degrees += 7.3) {
        const std::string body = "GPXXX," + latitudeFields(degrees) + "," + longitudeFields(degrees * 2.0);
        const auto read = position(Sentence('$', body), 0);
        ASSERT_TRUE(read);
        EXPECT_NEAR(read->latitude, degrees, 1e-6); // the text has 1/600000 of a degree
        EXPECT_NEAR(read->longitude, degrees * 2.0, 1e-6);
    }
}

TEST(MakeVdm, IsALineThatReadsBack) {
    PositionReport report{.type = 18, .mmsi = 235'012'345};
    report.sog = 6.4;
    report.longitude = -1.3;
    report.latitude = 50.7;
    report.cog = 220.0;
    std::string line = makeVdm(report, 'B');
    ASSERT_EQ(line.substr(line.size() - 2), "\r\n");
    line.resize(line.size() - 2);
    const LineReading reading = readLine(Line{line, false, 1});
    ASSERT_EQ(reading.kind, LineKind::Sentence);
    const AisReading vdm = readVdm(Sentence(reading.start, reading.body));
    ASSERT_EQ(vdm.outcome, AisOutcome::Report);
    EXPECT_EQ(vdm.report.mmsi, 235'012'345U);
    EXPECT_EQ(vdm.report.sog, 6.4);
}

} // namespace
} // namespace tallowmere::nmea

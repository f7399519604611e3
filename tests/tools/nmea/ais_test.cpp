#include "tools/nmea/ais.hpp"

#include "tools/nmea/encode.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace tallowmere::nmea {
namespace {

/// Packs a message written out as ones and zeros (blanks between its fields are ignored) into characters: six
/// bits each, 0 to 39 from '0' on, 40 to 63 from '`' on.
std::string armour(std::string_view bits) {
    std::string payload;
    int value = 0;
    int count = 0;
    for (const char bit : bits) {
        if (bit == ' ') continue;
        value = value * 2 + (bit == '1' ? 1 : 0);
        if (++count % 6 != 0) continue;
        payload += static_cast<char>(value < 40 ? '0' + value : '`' + (value - 40));
        value = 0;
    }
    return payload;
}

// Fields in order: type 6, repeat 2, MMSI 30, status 4, turn 8, speed 10, accuracy 1, longitude 28, latitude 27,
// course 12, heading 9, second 6, the rest 25.
//   MMSI 123456789: 7*2^24 + 91*2^16 + 52501
//   speed 123 = 12.3 kn; longitude -7.5 degrees = -4500000; latitude 50.25 degrees = 30150000
//   course 2345 = 234.5 degrees; heading 231; second 42
constexpr std::string_view kClassABits = "000010 00 000111010110111100110100010101 0000 00000000 0001111011 1 "
                                         "1111101110110101010111100000 001110011000000110101110000 "
                                         "100100101001 011100111 101010 0000000000000000000000000";

TEST(AisReport, ClassAIsReadFromItsBits) {
    const AisReading reading = readPayload(armour(kClassABits), 0);
    ASSERT_EQ(reading.outcome, AisOutcome::Report);
    EXPECT_EQ(reading.report.type, 2);
    EXPECT_EQ(reading.report.mmsi, 123'456'789U);
    EXPECT_EQ(reading.report.sog, 12.3);
    EXPECT_EQ(reading.report.longitude, -7.5);
    EXPECT_EQ(reading.report.latitude, 50.25);
    EXPECT_EQ(reading.report.cog, 234.5);
    EXPECT_EQ(reading.report.heading, 231.0);
    EXPECT_EQ(reading.report.second, 42U);
}

// Type 18: type 6, repeat 2, MMSI 30, reserved 8, speed 10, accuracy 1, longitude 28, latitude 27, course 12,
// heading 9, second 6, the rest 29.
constexpr std::string_view kClassBBits = "010010 00 000111010110111100110100010101 11111111 0000000111 0 "
                                         "0000010001001010101000100000 110001100111111001010010000 "
                                         "000000000001 000000000 000000 00000000000000000000000000000";

TEST(AisReport, ClassBIsReadFromItsBits) {
    const AisReading reading = readPayload(armour(kClassBBits), 0);
    ASSERT_EQ(reading.outcome, AisOutcome::Report);
    EXPECT_EQ(reading.report.type, 18);
    EXPECT_EQ(reading.report.mmsi, 123'456'789U);
    EXPECT_EQ(reading.report.sog, 0.7);
    EXPECT_EQ(reading.report.longitude, 4'500'000 / 600'000.0);
    EXPECT_EQ(reading.report.latitude, -30'150'000 / 600'000.0);
    EXPECT_EQ(reading.report.cog, 0.1);
    EXPECT_EQ(reading.report.heading, 0.0);
}

TEST(AisReport, EveryNotAvailableCodeIsAbsent) {
    // Speed 1023, longitude 181 degrees, latitude 91 degrees, course 3600, heading 511.
    const AisReading reading =
        readPayload(armour("000001 00 000111010110111100110100010101 0000 00000000 1111111111 0 "
                           "0110011110010001101011000000 011010000010010000101000000 111000010000 111111111 111100 "
                           "0000000000000000000000000"),
                    0);
    ASSERT_EQ(reading.outcome, AisOutcome::Report);
    EXPECT_FALSE(reading.report.sog);
    EXPECT_FALSE(reading.report.longitude);
    EXPECT_FALSE(reading.report.latitude);
    EXPECT_FALSE(reading.report.cog);
    EXPECT_FALSE(reading.report.heading);
}

TEST(AisReport, ValuesBeyondTheirScaleAreAbsent) {
    // Course 4095, heading 360, longitude 2^27 - 1 (223 degrees): none of them is possible.
    const AisReading reading =
        readPayload(armour("000011 00 000111010110111100110100010101 0000 00000000 1111111110 0 "
                           "0111111111111111111111111111 001110011000000110101110000 111111111111 101101000 000000 "
                           "0000000000000000000000000"),
                    0);
    ASSERT_EQ(reading.outcome, AisOutcome::Report);
    EXPECT_EQ(reading.report.sog, 102.2); // "102.2 or more" is the largest speed, not a missing one
    EXPECT_FALSE(reading.report.longitude);
    EXPECT_FALSE(reading.report.latitude) << "half a position is none";
    EXPECT_FALSE(reading.report.cog);
    EXPECT_FALSE(reading.report.heading);
}

TEST(AisReport, RecordedMessageAgreesWithItsBits) {
    // 1 | MMSI 366806940 | speed 1023 | longitude -73389487 | latitude 22691068 | course 3600 | heading 511
    const AisReading reading = readPayload("15Ml7W?P?wG@5BRE`tw>4?vP0L16", 0);
    ASSERT_EQ(reading.outcome, AisOutcome::Report);
    EXPECT_EQ(reading.report.mmsi, 366'806'940U);
    EXPECT_FALSE(reading.report.sog);
    EXPECT_EQ(reading.report.longitude, -73'389'487 / 600'000.0);
    EXPECT_EQ(reading.report.latitude, 22'691'068 / 600'000.0);
    EXPECT_FALSE(reading.report.cog);
    EXPECT_FALSE(reading.report.heading);
    EXPECT_EQ(reading.report.second, 16U);
}

TEST(AisReport, MmsiMustHaveNineDigitsAtMostAndNotBeZero) {
    for (const std::string_view mmsi :
         {"000000000000000000000000000000", "111011100110101100101000000000", "111111111111111111111111111111"}) {
        std::string bits(kClassABits);
        bits.replace(10, 30, mmsi);
        EXPECT_EQ(readPayload(armour(bits), 0).outcome, AisOutcome::Damaged) << mmsi;
    }
    std::string largest(kClassABits);
    largest.replace(10, 30, "111011100110101100100111111111"); // 999999999
    EXPECT_EQ(readPayload(armour(largest), 0).report.mmsi, 999'999'999U);
}

TEST(AisPayload, MustHold168BitsWithoutItsFillBits) {
    const std::string payload = armour(kClassABits);
    ASSERT_EQ(payload.size(), 28U);
    EXPECT_EQ(readPayload(payload, 0).outcome, AisOutcome::Report);
    EXPECT_EQ(readPayload(payload + "0", 5).outcome, AisOutcome::Report);
    EXPECT_EQ(readPayload(payload, 1).outcome, AisOutcome::Damaged);
    EXPECT_EQ(readPayload(payload + "0", 6).outcome, AisOutcome::Damaged);
    for (std::size_t length = 0; length < payload.size(); ++length)
        EXPECT_EQ(readPayload(payload.substr(0, length), 0).outcome, AisOutcome::Damaged) << length;
}

TEST(AisPayload, CharactersOutsideTheCodeAreDamage) {
    for (int character = 1; character < 256; ++character) {
        std::string payload = armour(kClassABits);
        ASSERT_EQ(payload.size(), 28U);
        payload[20] = static_cast<char>(character);
        const bool inCode = (character >= '0' && character <= 'W') || (character >= '`' && character <= 'w');
        EXPECT_EQ(readPayload(payload, 0).outcome == AisOutcome::Damaged, !inCode) << character;
    }
}

TEST(AisPayload, OtherTypesAreTold) {
    const AisReading reading = readPayload("55P5TL01VIaAL@7WKO@mBplU@<PDhh000000001S;AJ::4A80?4i@E53", 0);
    EXPECT_EQ(reading.outcome, AisOutcome::OtherType);
    EXPECT_EQ(reading.type, 5);
    EXPECT_EQ(readPayload("0", 0).type, 0);
    EXPECT_EQ(readPayload("w", 0).type, 63);
}

AisReading vdm(const std::string& fields) {
    return readVdm(Sentence('!', "AIVDM," + fields));
}

TEST(Vdm, PartsOfLongMessagesAreToldApart) {
    EXPECT_EQ(vdm("2,1,3,B,55P5TL01VIaAL@7WKO@mBplU@<PDhh00000000,0").outcome, AisOutcome::OtherType);
    EXPECT_EQ(vdm("2,2,3,B,1S;AJ::4A80?4i@E53,2").outcome, AisOutcome::Continuation);
    EXPECT_EQ(vdm("2,1,3,B," + armour(kClassABits) + ",0").outcome, AisOutcome::Damaged);
}

TEST(Vdm, DamagedFieldsGiveNoReport) {
    const std::string payload = armour(kClassABits);
    ASSERT_EQ(vdm("1,1,,A," + payload + ",0").outcome, AisOutcome::Report);
    for (const std::string& fields :
         {std::string(), std::string(",,,,,"), ",1,,A," + payload + ",0", "1,0,,A," + payload + ",0",
          "1,2,,A," + payload + ",0", "-1,1,,A," + payload + ",0", "1,1,,A," + payload + ",",
          "1,1,,A," + payload + ",6", "1,1,,A," + payload + ",999999999", std::string("1,1,,A,,0")})
        EXPECT_EQ(vdm(fields).outcome, AisOutcome::Damaged) << fields;
}

TEST(AisEncode, GivesTheBitsOfTheReferenceMessages) {
    PositionReport report{.type = 2, .mmsi = 123'456'789};
    report.sog = 12.3;
    report.longitude = -7.5;
    report.latitude = 50.25;
    report.cog = 234.5;
    report.heading = 231.0;
    report.second = 42;
    std::string bits(kClassABits);
    bits[bits.find(" 1 ") + 1] = '0'; // position accuracy is left at "low"
    EXPECT_EQ(encodePayload(report), armour(bits));
}

TEST(AisEncode, EveryTypeComesBackAsItWas) {
    for (const int type : {1, 2, 3, 18}) {
        PositionReport report{.type = type, .mmsi = 999'999'999};
        report.sog = 102.2;
        report.longitude = -180.0;
        report.latitude = -90.0;
        report.cog = 359.9;
        report.heading = 359.0;
        report.second = 59;
        const AisReading reading = readPayload(encodePayload(report), 0);
        ASSERT_EQ(reading.outcome, AisOutcome::Report) << type;
        EXPECT_EQ(reading.report.type, type);
        EXPECT_EQ(reading.report.mmsi, report.mmsi);
        EXPECT_EQ(reading.report.sog, report.sog);
        EXPECT_EQ(reading.report.longitude, report.longitude);
        EXPECT_EQ(reading.report.latitude, report.latitude);
        EXPECT_EQ(reading.report.cog, report.cog);
        EXPECT_EQ(reading.report.heading, report.heading);
        EXPECT_EQ(reading.report.second, report.second);
    }
}

TEST(AisEncode, AbsentAndImpossibleValuesBecomeNotAvailable) {
    PositionReport report{.type = 18, .mmsi = 1};
    report.sog = -1.0;
    report.longitude = 180.1;
    report.latitude = std::numeric_limits<double>::quiet_NaN();
    report.cog = 360.0;
    report.heading = 1e308;
    const AisReading reading = readPayload(encodePayload(report), 0);
    ASSERT_EQ(reading.outcome, AisOutcome::Report);
    EXPECT_FALSE(reading.report.sog || reading.report.longitude || reading.report.latitude || reading.report.cog ||
                 reading.report.heading);
    EXPECT_EQ(reading.report.second, 60U);
}

} // namespace
} // namespace tallowmere::nmea

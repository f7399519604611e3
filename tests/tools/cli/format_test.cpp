#include "tools/commands/format.hpp"

#include "core/channels/catalogue.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tallowmere::tools {
namespace {

constexpr std::int64_t kSecond = 10'000'000;
constexpr std::int64_t kDay = 86'400 * kSecond;
constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(FormatNumber, ShowsAsManyDecimalsAsAskedFor) {
    EXPECT_EQ(formatNumber(6.4, 2), "6.40");
    EXPECT_EQ(formatNumber(-32.14, 1), "-32.1");
    EXPECT_EQ(formatNumber(359.6, 0), "360");
}

TEST(FormatNumber, WithoutPrecisionShowsSignificantDigits) {
    EXPECT_EQ(formatNumber(12.345, kNoPrecision), "12.345");
    EXPECT_EQ(formatNumber(3, kNoPrecision), "3");
    EXPECT_EQ(formatNumber(12.345, 65535), "12.345");
}

TEST(FormatNumber, HoldsAbsurdDecimalsAtTwelve) {
    EXPECT_EQ(formatNumber(1.0, 12), "1.000000000000");
    EXPECT_EQ(formatNumber(1.0, 13), "1.000000000000");
    EXPECT_EQ(formatNumber(1.0, 254), "1.000000000000");
}

TEST(FormatNumber, NamesWhatIsNoFiniteNumber) {
    EXPECT_EQ(formatNumber(std::nan(""), 2), "nan");
    EXPECT_EQ(formatNumber(-std::nan(""), 2), "nan");
    EXPECT_EQ(formatNumber(kInfinity, 2), "inf");
    EXPECT_EQ(formatNumber(-kInfinity, 2), "-inf");
}

TEST(FormatNumber, OfHugeNumberStaysShort) {
    EXPECT_EQ(formatNumber(1e308, 2), "1.000000e+308");
    EXPECT_EQ(formatNumber(-1e15, 0), "-1.000000e+15");
    EXPECT_EQ(formatNumber(999'999'999'999'999.0, 0), "999999999999999");
    EXPECT_LE(formatNumber(-999'999'999'999'999.0, 65534).size(), 32U);
}

TEST(FormatNumber, OfRoundedNegativeZeroHasNoSign) {
    EXPECT_EQ(formatNumber(-0.04, 1), "0.0");
    EXPECT_EQ(formatNumber(-0.0, 0), "0");
    EXPECT_EQ(formatNumber(-0.06, 1), "-0.1");
    EXPECT_EQ(formatNumber(-1e-300, 2), "0.00");
}

TEST(FormatPosition, ShowsDegreesAndDecimalMinutes) {
    EXPECT_EQ(formatLatitude(50.766), "50\u00B045.960'N");
    EXPECT_EQ(formatLatitude(-33.5), "33\u00B030.000'S");
    EXPECT_EQ(formatLongitude(-1.305), "001\u00B018.300'W");
    EXPECT_EQ(formatLongitude(200.25), "200\u00B015.000'E");
}

TEST(FormatPosition, CarriesSixtyMinutesIntoTheDegree) {
    EXPECT_EQ(formatLatitude(49.9999999), "50\u00B000.000'N");
    EXPECT_EQ(formatLongitude(-0.99999999), "001\u00B000.000'W");
}

TEST(FormatPosition, OnTheLineIsNorthAndEast) {
    EXPECT_EQ(formatLatitude(-0.0), "00\u00B000.000'N");
    EXPECT_EQ(formatLongitude(-1e-9), "000\u00B000.000'E");
}

TEST(FormatPosition, BeyondAnyPositionIsPlainNumber) {
    EXPECT_EQ(formatLatitude(1000.0), "1000\u00B000.000'N");
    EXPECT_EQ(formatLatitude(1000.5), "1000.5");
    EXPECT_EQ(formatLongitude(-1e308), "-1e+308");
    EXPECT_EQ(formatLongitude(std::nan("")), "nan");
    EXPECT_EQ(formatLatitude(kInfinity), "inf");
}

TEST(FormatQuantity, ChoosesByClass) {
    EXPECT_EQ(formatQuantity(UnitClass::Latitude, 50.766, kNoPrecision), "50\u00B045.960'N");
    EXPECT_EQ(formatQuantity(UnitClass::Longitude, 1.5, kNoPrecision), "001\u00B030.000'E");
    EXPECT_EQ(formatQuantity(UnitClass::BoatSpeed, 6.4, 2), "6.40");
    EXPECT_EQ(formatQuantity(static_cast<UnitClass>(-7), 6.4, 1), "6.4");
}

TEST(FormatQuantity, DistanceToLineHasThreeDecimalsAtLeast) {
    EXPECT_EQ(formatQuantity(UnitClass::LineDistance, 0.0541, 1), "0.054");
    EXPECT_EQ(formatQuantity(UnitClass::LineDistance, 0.0541, 4), "0.0541");
    EXPECT_EQ(formatQuantity(UnitClass::Distance, 0.0541, 1), "0.1");
}

TEST(FormatMoment, CountsFrom1601) {
    EXPECT_EQ(formatMoment(0), "1601-01-01T00:00:00Z");
    EXPECT_EQ(formatMoment(116'444'736'000'000'000), "1970-01-01T00:00:00Z");
    EXPECT_EQ(formatMoment(134'081'568'000'000'000 + 12 * 3600 * kSecond + 34 * 60 * kSecond + 56 * kSecond),
              "2025-11-21T12:34:56Z");
}

TEST(FormatMoment, KnowsLeapDays) {
    const std::int64_t year2000 = 125'911'584'000'000'000;
    EXPECT_EQ(formatMoment(year2000), "2000-01-01T00:00:00Z");
    EXPECT_EQ(formatMoment(year2000 + 59 * kDay), "2000-02-29T00:00:00Z");
    EXPECT_EQ(formatMoment(year2000 + 60 * kDay), "2000-03-01T00:00:00Z");
    EXPECT_EQ(formatMoment(year2000 + 365 * kDay), "2000-12-31T00:00:00Z");
    EXPECT_EQ(formatMoment(year2000 - 1), "2000-01-01T00:00:00Z");
    EXPECT_EQ(formatMoment(year2000 - kSecond), "1999-12-31T23:59:59Z");
    const std::int64_t year1700 = 36'159 * kDay; // no leap year: 24 leap days from 1601 to 1699
    EXPECT_EQ(formatMoment(year1700 + 59 * kDay), "1700-03-01T00:00:00Z");
}

TEST(FormatMoment, RoundsToTheNearestSecond) {
    EXPECT_EQ(formatMoment(kSecond / 2 - 1), "1601-01-01T00:00:00Z");
    EXPECT_EQ(formatMoment(kSecond / 2), "1601-01-01T00:00:01Z");
    EXPECT_EQ(formatMoment(-1), "1601-01-01T00:00:00Z");
}

TEST(FormatMoment, HoldsAtTheEndsOfTime) {
    EXPECT_EQ(formatMoment(kMax), "30828-09-14T02:48:05Z");
    EXPECT_EQ(formatMomentTenths(kMax), "30828-09-14T02:48:05.4Z");
    EXPECT_EQ(formatMoment(kMin), "-27627-04-19T21:11:55Z");
    EXPECT_EQ(formatMomentTenths(kMin), "-27627-04-19T21:11:54.5Z");
}

TEST(FormatMomentTenths, CutsTheTenths) {
    EXPECT_EQ(formatMomentTenths(kSecond - 1), "1601-01-01T00:00:00.9Z");
    EXPECT_EQ(formatMomentTenths(kSecond), "1601-01-01T00:00:01.0Z");
}

TEST(FormatSpan, ShowsHoursMinutesSeconds) {
    EXPECT_EQ(formatSpan(0), "0:00:00");
    EXPECT_EQ(formatSpan(5 * 60 * kSecond), "0:05:00");
    EXPECT_EQ(formatSpan(-(3600 + 2 * 60 + 3) * kSecond), "-1:02:03");
    EXPECT_EQ(formatSpan(100 * 3600 * kSecond), "100:00:00");
}

TEST(FormatSpan, ShowsTenthsWhereThereAreSome) {
    EXPECT_EQ(formatSpan(kSecond / 2), "0:00:00.5");
    EXPECT_EQ(formatSpan(59 * kSecond + kSecond * 97 / 100), "0:01:00");
    EXPECT_EQ(formatSpan(-kSecond / 100), "0:00:00");
}

TEST(FormatSpan, HoldsAtTheEndsOfTime) {
    EXPECT_EQ(formatSpan(kMax), "256204778:48:05.5");
    EXPECT_EQ(formatSpan(kMin), "-256204778:48:05.5");
}

TEST(FormatAge, GrowsCoarserWithAge) {
    EXPECT_EQ(formatAge(0.0), "0.0 s");
    EXPECT_EQ(formatAge(0.34), "0.3 s");
    EXPECT_EQ(formatAge(9.96), "10 s");
    EXPECT_EQ(formatAge(119.4), "119 s");
    EXPECT_EQ(formatAge(120.0), "2 min");
    EXPECT_EQ(formatAge(7200.0), "2 h");
    EXPECT_EQ(formatAge(3 * 86400.0), "3 d");
}

TEST(FormatAge, UnknownIsDash) {
    EXPECT_EQ(formatAge(std::nullopt), "-");
    EXPECT_EQ(formatAge(std::nan("")), "-");
    EXPECT_EQ(formatAge(-1.0), "-");
}

} // namespace
} // namespace tallowmere::tools

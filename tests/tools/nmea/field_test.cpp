#include "tools/nmea/field.hpp"

#include <gtest/gtest.h>

#include <string>

namespace tallowmere::nmea {
namespace {

TEST(Number, ReadsSignDigitsAndPoint) {
    EXPECT_EQ(number("12.5"), 12.5);
    EXPECT_EQ(number("-18.0"), -18.0);
    EXPECT_EQ(number("+7"), 7.0);
    EXPECT_EQ(number("007.31"), 7.31);
    EXPECT_EQ(number(".5"), 0.5);
    EXPECT_EQ(number("5."), 5.0);
    EXPECT_EQ(number("0"), 0.0);
    EXPECT_EQ(number("99999999999999999999"), 1e20);
}

TEST(Number, EverythingElseIsAbsent) {
    for (const std::string_view text : {"",
                                        "-",
                                        "+",
                                        ".",
                                        "-.",
                                        "--1",
                                        "+-1",
                                        "1-",
                                        "1.2.3",
                                        "1e5",
                                        "1E308",
                                        "nan",
                                        "NaN",
                                        "inf",
                                        "-inf",
                                        "0x10",
                                        "1,5",
                                        " 1",
                                        "1 ",
                                        "12a",
                                        "a12",
                                        "\xFF",
                                        "999999999999999999999"})
        EXPECT_EQ(number(text), std::nullopt) << text;
    EXPECT_EQ(number(std::string(100'000, '9')), std::nullopt);
    EXPECT_EQ(number(std::string_view("1\0", 2)), std::nullopt);
}

TEST(WholeNumber, TakesUpToNineDigits) {
    EXPECT_EQ(wholeNumber("0"), 0U);
    EXPECT_EQ(wholeNumber("007"), 7U);
    EXPECT_EQ(wholeNumber("999999999"), 999'999'999U);
    for (const std::string_view text : {"", "1000000000", "-1", "+1", "1.0", "x"})
        EXPECT_EQ(wholeNumber(text), std::nullopt) << text;
}

TEST(NumberIn, UnitMustFitOrBeLeftOut) {
    const Sentence sentence('$', "IIXXX,1.5,N,2.5,,3.5,n,4.5");
    EXPECT_EQ(numberIn(sentence, 0, 'N'), 1.5);
    EXPECT_EQ(numberIn(sentence, 0, 'K'), std::nullopt);
    EXPECT_EQ(numberIn(sentence, 2, 'N'), 2.5);
    EXPECT_EQ(numberIn(sentence, 4, 'N'), 3.5);
    EXPECT_EQ(numberIn(sentence, 6, 'N'), 4.5);
    EXPECT_EQ(numberIn(sentence, 7, 'N'), std::nullopt);
}

TEST(Directed, SideGivesTheSign) {
    const Sentence sentence('$', "IIXXX,15.0,E,15.0,W,15.0,,15.0,X,,E");
    EXPECT_EQ(directed(sentence, 0, 'E', 'W'), 15.0);
    EXPECT_EQ(directed(sentence, 2, 'E', 'W'), -15.0);
    EXPECT_EQ(directed(sentence, 4, 'E', 'W'), std::nullopt);
    EXPECT_EQ(directed(sentence, 6, 'E', 'W'), std::nullopt);
    EXPECT_EQ(directed(sentence, 8, 'E', 'W'), std::nullopt);
}

std::optional<Position> positionOf(const std::string& fields) {
    return position(Sentence('$', "GPXXX," + fields), 0);
}

TEST(PositionFields, DegreesAndMinutesBecomeDegrees) {
    const auto west = positionOf("3748.784,N,12226.831,W");
    ASSERT_TRUE(west);
    EXPECT_DOUBLE_EQ(west->latitude, 37.0 + 48.784 / 60.0);
    EXPECT_DOUBLE_EQ(west->longitude, -(122.0 + 26.831 / 60.0));
    const auto south = positionOf("0001.5,S,00000.6,E");
    ASSERT_TRUE(south);
    EXPECT_DOUBLE_EQ(south->latitude, -0.025);
    EXPECT_DOUBLE_EQ(south->longitude, 0.01);
}

TEST(PositionFields, PolesAndDateLineAreInReach) {
    EXPECT_TRUE(positionOf("9000.000,N,18000.000,W"));
    EXPECT_FALSE(positionOf("9000.001,N,18000.000,W"));
    EXPECT_FALSE(positionOf("9000.000,N,18000.001,E"));
}

TEST(PositionFields, HalfAPositionIsNone) {
    for (const std::string fields : {"3748.784,N,,", ",,12226.831,W", "3748.784,,12226.831,W", "3748.784,N,12226.831,",
                                     "3760.000,N,12226.831,W", "3748.784,E,12226.831,W", "-3748.784,N,12226.831,W",
                                     "nan,N,12226.831,W", "3748.784,N,99999999999999999999,W", "", ",,,"})
        EXPECT_FALSE(positionOf(fields)) << fields;
}

TEST(TimeOfDay, ReadsHoursMinutesSeconds) {
    EXPECT_EQ(timeOfDay("000000"), 0.0);
    EXPECT_EQ(timeOfDay("194310"), 70990.0);
    EXPECT_EQ(timeOfDay("190315.250"), 68595.25);
    EXPECT_EQ(timeOfDay("235960"), 86400.0); // a leap second
}

TEST(TimeOfDay, ImpossibleTimesAreAbsent) {
    for (const std::string_view text : {"", "12345", "240000", "126000", "120061", "1200000", "12-100", "120+10",
                                        "12:00:00", "120000.x", "12000.0", "1200 0"})
        EXPECT_EQ(timeOfDay(text), std::nullopt) << text;
}

TEST(DayNumber, CountsFromTheEndOf1899) {
    EXPECT_EQ(dayNumber(1970, 1, 1), 25569.0);
    EXPECT_EQ(dayNumber(2000, 2, 29), 36585.0);
    EXPECT_EQ(dayNumber(2008, 7, 14), 39643.0);
}

TEST(DayNumber, DaysThatDoNotExistAreAbsent) {
    EXPECT_EQ(dayNumber(2001, 2, 29), std::nullopt);
    EXPECT_EQ(dayNumber(2001, 0, 1), std::nullopt);
    EXPECT_EQ(dayNumber(2001, 13, 1), std::nullopt);
    EXPECT_EQ(dayNumber(2001, 1, 0), std::nullopt);
    EXPECT_EQ(dayNumber(2001, 1, 300), std::nullopt);
    EXPECT_EQ(dayNumber(0, 1, 1), std::nullopt);
    EXPECT_EQ(dayNumber(999'999'999, 1, 1), std::nullopt);
}

TEST(DateField, TwoDigitYearsTurnOverAtEighty) {
    EXPECT_EQ(dateOf("140708"), 39643.0);
    EXPECT_EQ(dateOf("010100"), 36526.0);
    EXPECT_EQ(dateOf("311279"), dayNumber(2079, 12, 31));
    EXPECT_EQ(dateOf("010180"), dayNumber(1980, 1, 1));
    for (const std::string_view text : {"", "14078", "1407080", "320108", "14-708"})
        EXPECT_EQ(dateOf(text), std::nullopt) << text;
}

} // namespace
} // namespace tallowmere::nmea

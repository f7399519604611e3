#include "core/config/number_scanner.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace tallowmere::test {
namespace {

constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();

std::optional<ScannedNumber> scan(std::string_view text) {
    return NumberScanner<char>(text).number();
}

TEST(LeadingInteger, TakesWhiteSpaceSignAndDigits) {
    EXPECT_EQ(leadingInteger(u"42"), 42);
    EXPECT_EQ(leadingInteger(u" \t\r\n\v\f-42"), -42);
    EXPECT_EQ(leadingInteger(u"+7"), 7);
    EXPECT_EQ(leadingInteger(u"007"), 7);
}

TEST(LeadingInteger, EndsAtTheFirstOtherCharacter) {
    EXPECT_EQ(leadingInteger(u"12x3"), 12);
    EXPECT_EQ(leadingInteger(u"3.9"), 3);
    EXPECT_EQ(leadingInteger(u"0x10"), 0);
    EXPECT_EQ(leadingInteger(std::u16string_view(u"1\0002", 3)), 1);
}

TEST(LeadingInteger, IsZeroWithoutDigits) {
    for (const std::u16string_view text : {u"", u" ", u"-", u"+", u"+-1", u"- 1", u"x1", u"\u0661", u"\uFF11"})
        EXPECT_EQ(leadingInteger(text), 0);
}

TEST(LeadingInteger, StopsAtTheEndsOfTheInteger) {
    EXPECT_EQ(leadingInteger(u"2147483647"), kMax);
    EXPECT_EQ(leadingInteger(u"2147483648"), kMax);
    EXPECT_EQ(leadingInteger(u"4294967296"), kMax);
    EXPECT_EQ(leadingInteger(u"99999999999999999999999999"), kMax);
    EXPECT_EQ(leadingInteger(u"-2147483648"), kMin);
    EXPECT_EQ(leadingInteger(u"-2147483649"), kMin);
    EXPECT_EQ(leadingInteger(u"-9223372036854775808"), kMin);
    EXPECT_EQ(leadingInteger(u"-99999999999999999999999999"), kMin);
}

TEST(LeadingUnsigned, WrapsAndIsEmptyWithoutDigits) {
    EXPECT_EQ(leadingUnsigned(u" 244660123 MMSI"), 244660123u);
    EXPECT_EQ(leadingUnsigned(u"-1"), 0xFFFFFFFFu);
    EXPECT_EQ(leadingUnsigned(u"4294967295"), 0xFFFFFFFFu);
    EXPECT_EQ(leadingUnsigned(u"4294967297"), 1u);
    EXPECT_EQ(leadingUnsigned(u"18446744073709551615"), 0xFFFFFFFFu);
    EXPECT_EQ(leadingUnsigned(u"18446744073709551616"), 0xFFFFFFFFu);
    EXPECT_EQ(leadingUnsigned(u"-18446744073709551616"), 0xFFFFFFFFu);
    for (const std::u16string_view text : {u"", u"x", u"-", u"+ 1"}) EXPECT_EQ(leadingUnsigned(text), std::nullopt);
}

TEST(ScannedNumber, ShortFormKeepsTheLow16Bits) {
    EXPECT_EQ(scan("32767")->asInt16(), 32767);
    EXPECT_EQ(scan("32768")->asInt16(), -32768);
    EXPECT_EQ(scan("65536")->asInt16(), 0);
    EXPECT_EQ(scan("65541")->asInt16(), 5);
    EXPECT_EQ(scan("-65531")->asInt16(), 5);
    EXPECT_EQ(scan("-9223372036854775808")->asInt16(), 0);
    EXPECT_EQ(scan("9223372036854775808")->asInt16(), -1);
    EXPECT_EQ(scan("99999999999999999999")->asInt16(), -1);
}

TEST(NumberScanner, WalksFromNumberToNumber) {
    NumberScanner<char> scanner("1-2+3 ,4");
    EXPECT_EQ(scanner.number()->asInt32(), 1);
    EXPECT_EQ(scanner.number()->asInt32(), -2);
    EXPECT_EQ(scanner.number()->asInt32(), 3);
    EXPECT_FALSE(scanner.skip(','));
    scanner.skipSpace();
    EXPECT_TRUE(scanner.skip(','));
    EXPECT_EQ(scanner.number()->asInt32(), 4);
    EXPECT_FALSE(scanner.number());
    EXPECT_FALSE(scanner.skip(','));
}

} // namespace
} // namespace tallowmere::test

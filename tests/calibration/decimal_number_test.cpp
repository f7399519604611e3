#include "calibration/decimal_number.hpp"
#include "tests/calibration/calibration_fixture.hpp"

#include <clocale>
#include <cstdlib>
#include <random>

namespace tallowmere::test {
namespace {

void expectNumber(std::string_view text, double expected) {
    const std::optional<double> found = leadingDecimal(text);
    ASSERT_TRUE(found) << text.substr(0, 60);
    EXPECT_EQ(bitsOf(*found), bitsOf(expected)) << text.substr(0, 60);
}
void expectNone(std::string_view text) {
    EXPECT_EQ(leadingDecimal(text), std::nullopt) << text.substr(0, 60);
}

TEST(LeadingDecimal, ReadsSignPointAndExponent) {
    expectNumber("0", 0.0);
    expectNumber("-0", -0.0);
    expectNumber("12", 12.0);
    expectNumber("+12", 12.0);
    expectNumber("-12.75", -12.75);
    expectNumber(".5", 0.5);
    expectNumber("-.5", -0.5);
    expectNumber("5.", 5.0);
    expectNumber("1e3", 1000.0);
    expectNumber("1E-3", 0.001);
    expectNumber("2.5e+1", 25.0);
    expectNumber("0.1", 0.1);
    expectNumber("32767", NO_VALUE);
    expectNumber("007", 7.0);
}

TEST(LeadingDecimal, StepsOverWhiteSpaceInFront) {
    expectNumber(" \t\v\f\r\n 4", 4.0);
    expectNone("");
    expectNone(" \r");
}

TEST(LeadingDecimal, TakesTheLongestNumberAndIgnoresTheRest) {
    expectNumber("12kt", 12.0);
    expectNumber("5\r", 5.0);
    expectNumber("1e", 1.0);
    expectNumber("1e+", 1.0);
    expectNumber("1e-x", 1.0);
    expectNumber("1.2.3", 1.2);
    expectNumber("1-2", 1.0);
    expectNumber("3°", 3.0);
    expectNumber("0xyz", 0.0);
    expectNumber("0x", 0.0);
    expectNumber(std::string_view("7\0"
                                  "8",
                                  3),
                 7.0);
}

TEST(LeadingDecimal, WordsAndLoneSignsAreNone) {
    for (const char* text : {"-",
                             "+",
                             ".",
                             "-.",
                             "e5",
                             ".e5",
                             "+-5",
                             "-+5",
                             "--5",
                             "- 5",
                             "kt",
                             "inf",
                             "-inf",
                             "+inf",
                             "Info",
                             "infinity",
                             "nan",
                             "NaN",
                             "-nan(1)",
                             "#1",
                             "\xEF\xBB\xBF"
                             "1"})
        expectNone(text);
}

TEST(LeadingDecimal, HexadecimalIsNone) {
    for (const char* text : {"0x10", "0X1p3", "-0xA", "+0x.8", "0xf"}) expectNone(text);
}

TEST(LeadingDecimal, TooLargeIsNoneAndTooSmallIsZero) {
    expectNumber("1.7976931348623157e308", std::numeric_limits<double>::max());
    expectNone("1.7976931348623159e308");
    expectNone("-1e400");
    expectNone("1e99999999999999999999");
    expectNone("0.001e312");
    expectNone("1" + std::string(400, '0'));
    expectNone("1" + std::string(400, '0') + ".5");
    expectNumber("4.9406564584124654e-324", 5e-324);
    expectNumber("1e-400", 0.0);
    expectNumber("-1e-400", -0.0);
    expectNumber("1e-99999999999999999999", 0.0);
    expectNumber("100e-350", 0.0);
    expectNumber("0e99999999999999999999", 0.0);
    expectNumber("0." + std::string(60000, '0') + "1", 0.0);
    expectNumber("0." + std::string(400, '0') + "1e401", 1.0);
    expectNone("0." + std::string(400, '0') + "1e801");
    expectNumber(std::string(60000, '0') + "1e-1", 0.1);
}

TEST(LeadingDecimal, PlainNumbersAreThoseOfTheStandardLibrary) {
    ASSERT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
    std::mt19937 random(3);
    constexpr std::string_view alphabet = "0123456789012345678901234567890123456789.eE+-";
    int read = 0;
    for (int round = 0; round < 20000; ++round) {
        std::string text(1 + random() % 12, '0');
        for (char& c : text) c = alphabet[random() % alphabet.size()];
        char* end = nullptr;
        const double expected = std::strtod(text.c_str(), &end);
        const std::optional<double> found = leadingDecimal(text);
        if (end == text.c_str() || std::isinf(expected)) {
            expectNone(text);
        } else {
            expectNumber(text, expected);
            ++read;
        }
        (void)found;
    }
    EXPECT_GT(read, 10000);
}

} // namespace
} // namespace tallowmere::test

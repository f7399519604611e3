// What the program shows against what GetZanVar gives, bit for bit: this process has the library, the real program
// looks from outside.
#include "tests/api/live_section.hpp"

#include <tallowmere/tallowmere.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <limits>
#include <random>
#include <string>

namespace tallowmere::test {
namespace {

using nlohmann::json;

constexpr std::size_t kSettings = 6380; // of 108 bytes each; calibrate 0, unit class 10
constexpr std::size_t kFlags = 6196;
constexpr std::size_t kIntegers = 6144;
constexpr std::size_t kAlternates = 5144; // 10 rows of 9 numbers

/// All channels of a boat as `tallowmere get` has them, by number.
json channelsOf(std::uint16_t boat) {
    const char* file = "get_library_test.json";
    // The outer quotes are for cmd.exe, which takes one pair away.
    const std::string quotes = TALLOWMERE_SHELL_IS_CMD != 0 ? "\"" : "";
    std::string command = quotes + "\"" TALLOWMERE_PROGRAM "\" get --json --boat " + std::to_string(boat);
    for (int channel = 0; channel < ZAN_CHANNEL_COUNT; ++channel) command += ' ' + std::to_string(channel);
    command += std::string(" > ") + file + quotes;
    int result = -1;
    // On a full machine Wine now and then starts no shell.
    for (int attempt = 0; attempt < 3 && result == -1; ++attempt) result = std::system(command.c_str());
    EXPECT_EQ(result, 0);
    std::ifstream stream(file);
    json parsed = json::parse(stream, nullptr, false);
    stream.close();
    (void)std::remove(file);
    return parsed.at("channels");
}

/// True when the program's value is that of GetZanVar.
testing::AssertionResult agrees(const json& shown, std::uint16_t channel, std::uint16_t boat) {
    double value = 0;
    std::uint16_t source = 0;
    const bool there = GetZanVar(channel, &value, boat, &source) != 0;
    const json& number = shown.at("value");
    const json& note = shown.at("note");
    const auto differs = [&] {
        return testing::AssertionFailure() << "channel " << channel << " boat " << boat << ": GetZanVar " << there
                                           << ' ' << value << ", shown " << shown.dump();
    };
    if (!there)
        return number.is_null() && note != "nan" && note != "inf" && note != "-inf" ? testing::AssertionSuccess()
                                                                                    : differs();
    if (std::isnan(value)) return note == "nan" ? testing::AssertionSuccess() : differs();
    if (std::isinf(value)) return note == (value > 0 ? "inf" : "-inf") ? testing::AssertionSuccess() : differs();
    if (!number.is_number()) return differs();
    const bool same = std::bit_cast<std::uint64_t>(number.get<double>()) == std::bit_cast<std::uint64_t>(value);
    return same && shown.at("source") == source ? testing::AssertionSuccess() : differs();
}

template <class Number> void put(std::size_t offset, Number number) {
    std::memcpy(liveSection() + offset, &number, sizeof number);
}

bool isDerived(std::uint16_t channel) {
    return channel == ZAN_ROT || channel == ZAN_TRIMRATE || channel == ZAN_HEELRATE || channel == ZAN_RUDDERTOE ||
           channel == ZAN_GPS_TOFFSET;
}

class GetAndTheLibrary : public testing::Test {
  protected:
    void SetUp() override {
        renewSection();
        put(kIntegers + 4 * 6, std::int32_t{3}); // fixes of the own boat are accepted
        for (std::uint32_t cell = 0; cell < 10 * 9; ++cell) put(kAlternates + 4 * cell, 1 + 3 * cell);
    }
};

TEST_F(GetAndTheLibrary, AgreeOnEveryChannelOfEveryKindOfBoat) {
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> numbers(-500.0, 500.0);
    for (const std::uint16_t boat : std::initializer_list<std::uint16_t>{0, 1, 2, 99})
        for (std::uint16_t channel = 1; channel < ZAN_CHANNEL_COUNT; ++channel) {
            // Written through calibration, range checks and angles brought into range; some missing.
            put(kSettings + 108U * channel, std::uint8_t{1});
            if (channel % 11 != 0) SetZanVar(channel, numbers(random), boat);
        }
    for (const std::uint16_t boat : std::initializer_list<std::uint16_t>{0, 1, 2, 50, 99}) {
        const json shown = channelsOf(boat);
        for (std::uint16_t channel = 0; channel < ZAN_CHANNEL_COUNT; ++channel)
            if (!isDerived(channel)) {
                EXPECT_TRUE(agrees(shown.at(channel), channel, boat));
            }
    }
}

TEST_F(GetAndTheLibrary, AgreeOnNumbersAtTheEdges) {
    for (const double number : {0.0, -0.0, 0.1, 5e-324, 1.7976931348623157e308, 32767.0, std::nan(""),
                                std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()}) {
        for (const std::uint16_t channel : {ZAN_BSP, ZAN_SAIL, ZAN_TMTOGUN, ZAN_GPS_TIME, ZAN_LAT, ZAN_USER_3})
            SetZanVar(channel, number, 0);
        const json shown = channelsOf(0);
        for (const std::uint16_t channel : {ZAN_BSP, ZAN_SAIL, ZAN_TMTOGUN, ZAN_GPS_TIME, ZAN_LAT, ZAN_USER_3})
            EXPECT_TRUE(agrees(shown.at(channel), channel, 0));
    }
}

TEST_F(GetAndTheLibrary, AgreeOnWhatTheLibraryComputes) {
    for (const std::size_t flag : {24U, 27U, 33U})
        put(kFlags + flag, std::uint8_t{1}); // rates, and AWA less the mast angle
    for (const double number : {10.0, 350.0, 11.5}) {
        for (const std::uint16_t channel :
             {ZAN_MASTANG, ZAN_AWA, ZAN_HDG, ZAN_HEEL, ZAN_TRIM, ZAN_RUDDERP, ZAN_RUDDERS})
            SetZanVar(channel, number, 0);
        const json shown = channelsOf(0);
        for (std::uint16_t channel = 0; channel < ZAN_CHANNEL_COUNT; ++channel)
            if (!isDerived(channel)) {
                EXPECT_TRUE(agrees(shown.at(channel), channel, 0));
            }
    }
}

TEST_F(GetAndTheLibrary, ADerivedChannelIsShownAsItIsMeant) {
    SetZanVar(ZAN_RUDDERS, 1.5, 0);
    SetZanVar(ZAN_RUDDERP, 4.0, 0);
    EXPECT_EQ(channelsOf(0).at(ZAN_RUDDERTOE).at("value"), 2.5) << "whatever GetZanVar makes of the record's header";
}

} // namespace
} // namespace tallowmere::test

// The example programs in C and C++, against the section that this program holds.
#include "tests/api/live_section.hpp"

#include <tallowmere/tallowmere.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

namespace tallowmere::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr std::size_t kOwnBoatName = 51092 + 6; // UTF-16
constexpr std::size_t kStamps = 59096;          // of the own boat, int64 each
constexpr std::size_t kValues = 62408;          // of the own boat, 16 bytes each
constexpr double kSecondsPerDay = 86400;
constexpr double kMetresPerMile = 1852;

/// What a program prints, and at its end how it ended. With a file that is kept only how it ended.
std::string outputOf(const std::string& program, const std::string& arguments, const std::string& kept = {}) {
    const std::string file = kept.empty() ? "examples_test.txt" : kept;
    // The outer quotes are for cmd.exe, which takes one pair away.
    const std::string quotes = TALLOWMERE_SHELL_IS_CMD != 0 ? "\"" : "";
    const std::string command = quotes + '"' + program + "\" " + arguments + " >" + file + quotes;
    const int status = std::system(command.c_str());
    if (!kept.empty()) return "status " + std::to_string(status);
    std::ifstream stream(file, std::ios::binary);
    std::string text(std::istreambuf_iterator<char>(stream), {});
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    stream.close();
    (void)std::remove(file.c_str());
    return text + "status " + std::to_string(status);
}

void makeOlder(std::uint16_t channel, std::int64_t seconds) {
    std::int64_t stamp = 0;
    std::memcpy(&stamp, liveSection() + kStamps + 8U * channel, sizeof stamp);
    stamp -= seconds * 10'000'000;
    std::memcpy(liveSection() + kStamps + 8U * channel, &stamp, sizeof stamp);
}

class Examples : public testing::Test {
  protected:
    void SetUp() override { renewSection(); }
};

TEST_F(Examples, WindDisplayShowsTheWind) {
    SetZanVar(ZAN_AWA, -32.06, 0);
    SetZanVar(ZAN_AWS, 15.24, 0);
    SetZanVar(ZAN_TWD, 271, 0);
    EXPECT_EQ(outputOf(TALLOWMERE_WIND_DISPLAY, "--plain --count 1"), "P ---------------W--|------------------ S\n"
                                                                      "AWA     -32.1 \xC2\xB0\n"
                                                                      "AWS      15.2 kt\n"
                                                                      "TWA         -\n"
                                                                      "TWS         -\n"
                                                                      "TWD       271 \xC2\xB0\n"
                                                                      "live\n"
                                                                      "status 0");
}

TEST_F(Examples, WindDisplayNamesTheAgeOfWhatIsStale) {
    SetZanVar(ZAN_AWA, 90, 0);
    makeOlder(ZAN_AWA, 1000);
    const std::string text = outputOf(TALLOWMERE_WIND_DISPLAY, "--plain --count 1");
    EXPECT_THAT(text, StartsWith("P ------------------|------------------ S\nAWA      90.0 \xC2\xB0  (10"));
    EXPECT_THAT(text, HasSubstr(" s old)\n"));
}

TEST_F(Examples, WindDisplayDrawsOverItsLastRound) {
    const std::string text = outputOf(TALLOWMERE_WIND_DISPLAY, "--count 2 --interval 0.01");
    EXPECT_THAT(text, HasSubstr("live\x1b[K\n\x1b[7AP ---"));
    EXPECT_THAT(text, testing::EndsWith("live\x1b[K\nstatus 0"));
}

TEST_F(Examples, NeverShowAReplayAsLive) {
    SetZanVar(ZAN_AWA, -32.06, 0);
    SetZanVar(ZAN_BSP, 6.4, 0);
    const std::u16string name = u"[REPLAY] Falcon";
    std::memcpy(liveSection() + kOwnBoatName, name.data(), 2 * name.size());
    const std::string wind = outputOf(TALLOWMERE_WIND_DISPLAY, "--plain --count 1");
    EXPECT_THAT(wind, HasSubstr("\nREPLAY: a recording is being played"));
    EXPECT_THAT(wind, testing::Not(HasSubstr("live")));
    EXPECT_EQ(outputOf(TALLOWMERE_START_COUNTDOWN, "--count 1"),
              "REPLAY   gun -   line -   burn -   below line -   speed 6.40 kt\nstatus 0");
}

TEST_F(Examples, SurviveAnyNumber) {
    for (const double number : {1e308, -1e308, std::nan(""), HUGE_VAL}) {
        for (const std::uint16_t channel : {ZAN_AWA, ZAN_AWS, ZAN_TMTOGUN, ZAN_BELOWLN, ZAN_BSP}) {
            SetZanVar(channel, 1, 0);
            const ChannelValue record{ZAN_KIND_DOUBLE, {}, {number}};
            std::memcpy(liveSection() + kValues + 16U * channel, &record, sizeof record); // past every check
        }
        EXPECT_THAT(outputOf(TALLOWMERE_WIND_DISPLAY, "--plain --count 1"),
                    HasSubstr("AWA         -\nAWS         -\n"));
        EXPECT_EQ(outputOf(TALLOWMERE_START_COUNTDOWN, "--count 1"),
                  "gun -   line -   burn -   below line -   speed -\nstatus 0");
    }
}

TEST_F(Examples, StartCountdownShowsTimesInMinutesAndDistancesInMetres) {
    SetZanVar(ZAN_TMTOGUN, 272 / kSecondsPerDay, 0);
    SetZanVar(ZAN_TMTOLN, 45 / kSecondsPerDay, 0);
    SetZanVar(ZAN_BURN, -5 / kSecondsPerDay, 0);
    SetZanVar(ZAN_BELOWLN, 12 / kMetresPerMile, 0);
    SetZanVar(ZAN_BSP, 6.4, 0);
    EXPECT_EQ(outputOf(TALLOWMERE_START_COUNTDOWN, "--count 1"),
              "gun 4:32   line 0:45   burn -0:05   below line 12 m   speed 6.40 kt\nstatus 0");
}

TEST_F(Examples, StartCountdownCountsASimulatedStart) {
    if (std::strlen(TALLOWMERE_PROGRAM) == 0) GTEST_SKIP() << "built without the program";
    const std::string race = "examples_test.nmea";
    ASSERT_EQ(outputOf(TALLOWMERE_PROGRAM, "simulate --seconds 20 --speed 0", race), "status 0");
    ASSERT_EQ(outputOf(TALLOWMERE_PROGRAM, "feed " + race + " --speed 0 --quiet 2>examples_test.err"), "status 0");
    (void)std::remove(race.c_str());
    (void)std::remove("examples_test.err");
    const std::string text = outputOf(TALLOWMERE_START_COUNTDOWN, "--count 1");
    int line = 0;
    int burn = 0;
    int below = 0;
    double speed = 0;
    ASSERT_EQ(std::sscanf(text.c_str(), "gun 1:40   line 0:%d   burn 0:%d   below line %d m   speed %lf kt", &line,
                          &burn, &below, &speed),
              4)
        << text;
    EXPECT_NEAR(line + burn, 100, 1) << "each is rounded";
    EXPECT_GT(below, 0);
    EXPECT_GT(speed, 0);
    EXPECT_THAT(text, testing::EndsWith("kt\nstatus 0"));
}

TEST_F(Examples, StartCountdownMarksWhatIsMissingAndWhatIsStale) {
    SetZanVar(ZAN_TMTOGUN, 272 / kSecondsPerDay, 0);
    makeOlder(ZAN_TMTOGUN, 60);
    EXPECT_EQ(outputOf(TALLOWMERE_START_COUNTDOWN, "--count 2 --interval 0.01"),
              "gun stale   line -   burn -   below line -   speed -\n"
              "gun stale   line -   burn -   below line -   speed -\nstatus 0");
}

TEST_F(Examples, RefuseWhatTheyDoNotKnow) {
    // 2, as the system's shell gives it back.
    const auto isRefused = testing::AnyOf("status 2", "status 512");
    for (const char* arguments : {"--count 0", "--count x", "--count", "--interval 0", "--interval nan", "more"}) {
        EXPECT_THAT(outputOf(TALLOWMERE_WIND_DISPLAY, arguments), isRefused);
        EXPECT_THAT(outputOf(TALLOWMERE_START_COUNTDOWN, arguments), isRefused);
    }
}

} // namespace
} // namespace tallowmere::test

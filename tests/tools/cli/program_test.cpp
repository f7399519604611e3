// The real program, in processes of its own, on the real platform. This process holds the section.
#include "core/ccore.hpp"
#include "core/channels/replay_sign.hpp"
#include "settings/reg_ex.hpp"
#include "tools/commands/reading.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <utility>

namespace tallowmere::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

bool onWindows() {
    return platform::hostPlatform().separator() == u'\\';
}

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

struct ProgramRun {
    int code;
    std::string out;
    std::string err;
};

std::string nextStem() {
    static std::atomic<int> number = 0;
    return "program_test_" + std::to_string(++number);
}

/// out   where the output goes; it is not read back
ProgramRun runInto(const std::filesystem::path& out, const std::string& arguments) {
    const std::filesystem::path err = nextStem() + ".err";
    const std::string program = std::filesystem::absolute(TALLOWMERE_PROGRAM).make_preferred().string();
    std::string command = "\"" + program + "\" " + arguments + " > " + out.string() + " 2> " + err.string();
    if (onWindows()) command = "\"" + command + "\""; // its shell takes the outermost quotes away
    const int status = std::system(command.c_str());
    ProgramRun result{status >= 256 ? status / 256 : status, {}, contentOf(err)};
    std::filesystem::remove(err);
    return result;
}

ProgramRun run(const std::string& arguments) {
    const std::filesystem::path out = nextStem() + ".out";
    ProgramRun result = runInto(out, arguments);
    result.out = contentOf(out);
    std::filesystem::remove(out);
    return result;
}

TEST(Program, StatusWithoutASectionMakesNone) {
    const ProgramRun result = run("status");
    EXPECT_EQ(result.code, 1) << result.err;
    EXPECT_THAT(result.out, HasSubstr("none"));
    EXPECT_EQ(platform::hostPlatform().openSection(sectionName(), kSharedAreaBytes), nullptr);
}

TEST(Program, ValueSetByOneProcessIsReadByAnother) {
    CCore holder(false);
    ASSERT_NE(holder.area(), nullptr);
    const ProgramRun written = run("set BSP 6.4");
    EXPECT_EQ(written.code, 0) << written.err;
    EXPECT_THAT(written.err, IsEmpty());
    const ProgramRun read = run("get BSP");
    EXPECT_EQ(read.code, 0) << read.err;
    EXPECT_THAT(read.out, HasSubstr("6.40  kt"));
    EXPECT_EQ(tools::readChannel(holder.area(), ZAN_BSP, 0, platform::hostPlatform().now()).value, "6.40");
}

TEST(Program, ValueIsGoneWithTheLastProcess) {
    EXPECT_EQ(run("set BSP 6.4").code, 0);
    const ProgramRun read = run("get BSP");
    EXPECT_EQ(read.code, 1);
    EXPECT_THAT(read.err, HasSubstr("there is no shared data"));
}

TEST(Program, StatusSeesTheSectionOfAnotherProcess) {
    CCore holder(false);
    const ProgramRun result = run("status");
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("ZanCore_363_253336, made by "));
}

TEST(Program, WatchIntoAFileIsPlain) {
    CCore holder(false);
    const ProgramRun result = run("watch BSP AWA --count 2 --interval 0.05");
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 2);
    EXPECT_THAT(result.out, HasSubstr("\tAWA\t-\t\u00B0\t-\t"));
    EXPECT_EQ(result.out.find('\x1b'), std::string::npos);
}

TEST(Program, WrongUsageHasItsOwnCode) {
    EXPECT_EQ(run("get").code, 2);
    EXPECT_EQ(run("get nosuchchannel").code, 1);
}

TEST(Program, NumbersOutOfRangeAreWrongUsageAndSaidReadably) {
    const std::string speed = "--speed: must be 0 (at once) or a number from 0.001 to 1000000";
    const std::pair<std::string, std::string> cases[] = {
        {"simulate --seconds -1", "--seconds: must be a whole number from 0 to 1000000000"},
        {"simulate --seconds 1.5", "--seconds: must be a whole number"},
        {"simulate --speed -1", speed},
        {"simulate --speed nan --seconds 1", speed},
        {"simulate --seed -1", "--seed: must be a whole number from 0 to 4294967295"},
        {"feed - --speed nan", speed},
        {"feed - --speed inf", speed},
        {"feed - --speed 1x", speed},
        {"watch --count -1", "--count: must be a whole number from 0 to 2147483647"},
        {"watch --count 1 --interval nan", "--interval: must be a number from 0.05 to 3600"},
        {"get BSP --boat 5.5", "--boat: must be a whole number from 0 to 99"},
    };
    for (const auto& [arguments, message] : cases) {
        const ProgramRun result = run(arguments);
        EXPECT_EQ(result.code, 2) << arguments;
        EXPECT_THAT(result.err, HasSubstr(message)) << arguments;
        EXPECT_THAT(result.out, IsEmpty()) << arguments;
    }
}

TEST(Program, SaysThatTheOutputCouldNotBeWritten) {
    if (!std::filesystem::is_character_file("/dev/full")) GTEST_SKIP() << "no device that is always full";
    for (const char* const arguments : {"simulate --seconds 3 --speed 0", "list"}) {
        const ProgramRun result = runInto("/dev/full", arguments);
        EXPECT_EQ(result.code, 3) << arguments;
        EXPECT_EQ(result.err, "tallowmere: the output could not be written\n") << arguments;
    }
}

TEST(Program, ASimulatedRaceIsFedIntoTheSection) {
    CCore holder(false);
    ASSERT_NE(holder.area(), nullptr);
    const ProgramRun race = run("simulate --seconds 2 --speed 0");
    EXPECT_EQ(race.code, 0) << race.err;
    EXPECT_THAT(race.err, IsEmpty());
    const std::filesystem::path recording = "program_test_race.nmea";
    std::ofstream(recording, std::ios::binary) << race.out;

    const ProgramRun fed = run("feed program_test_race.nmea --speed 0");
    std::filesystem::remove(recording);
    EXPECT_EQ(fed.code, 0) << fed.err;
    EXPECT_THAT(fed.out, IsEmpty()) << "the summary goes to standard error";
    EXPECT_THAT(fed.err, HasSubstr("program_test_race.nmea:\n"));
    EXPECT_THAT(fed.err, HasSubstr("RMC 2"));
    EXPECT_THAT(fed.err, Not(HasSubstr("damaged")));
    EXPECT_EQ(fed.err.find('\x1b'), std::string::npos) << "a file is no terminal";
    EXPECT_NE(tools::readChannel(holder.area(), ZAN_BSP, 0, platform::hostPlatform().now()).value, "-");
    EXPECT_EQ(holder.area()->hostWindow, 0U) << "taken back";
}

TEST(Program, OnePlayerRefusesWhileAnotherPlays) {
    CCore holder(false);
    ASSERT_NE(holder.area(), nullptr);
    const std::string start = "time,boat,channel,name,unit,class,kind,value\n";
    std::ofstream("first.csv") << start << "2025-11-21T12:00:00Z,0,1,BSP,kt,12,double,6.4\n"
                               << "2025-11-21T12:50:00Z,0,1,BSP,kt,12,double,6.5\n";
    std::ofstream("second.csv") << start << "2025-11-21T12:00:00Z,0,2,AWA,deg,13,double,30\n";
    const auto isPlaying = [&] {
        return isReplay(holder.area()) && holder.values().fetch(ZAN_BSP, 0).record.number() == 6.4;
    };
    std::atomic<bool> ended = false;
    ProgramRun first{};
    std::thread player([&] {
        first = run("play first.csv");
        ended = true;
    });
    while (!ended && !isPlaying()) platform::hostPlatform().sleepMilliseconds(10);
    const ProgramRun second = run("play second.csv --speed 0");
    EXPECT_EQ(second.code, 1);
    EXPECT_THAT(second.err, HasSubstr("another program is playing a recording"));
    EXPECT_TRUE(isPlaying());
    EXPECT_THAT(run("status").out, HasSubstr("REPLAY"));
    writeOnce(holder.area()->hostWindow, 1); // a host, for which the player ends
    player.join();
    writeOnce(holder.area()->hostWindow, 0);
    EXPECT_EQ(first.code, 1);
    EXPECT_THAT(first.err, HasSubstr("gives way"));
    EXPECT_FALSE(isReplay(holder.area()));
    EXPECT_EQ(run("play second.csv --speed 0").code, 0);
    std::filesystem::remove("first.csv");
    std::filesystem::remove("second.csv");
}

/// The user's "Bsp" calibration, which adds one knot to every speed, and a recording of a boat at six knots.
class CalibratedFeed : public ::testing::Test {
  protected:
    void SetUp() override {
        std::ofstream("one_knot.txt") << "0\n0 1\n";
        std::ofstream("six_knots.nmea") << "$IIVHW,,T,,M,6.00,N,,K*4D\r\n";
        CRegEx settings(platform::hostPlatform());
        settings.Create(kCalibrationKey);
        settings.writeDword(u"CalUse_2", 1);
        settings.writeString(u"CalFile_2", std::filesystem::absolute("one_knot.txt").u16string());
    }
    void TearDown() override {
        CRegEx settings(platform::hostPlatform());
        settings.Open(kCalibrationKey);
        settings.writeDword(u"CalUse_2", 0);
        settings.writeString(u"CalFile_2", u"");
        std::filesystem::remove("one_knot.txt");
        std::filesystem::remove("six_knots.nmea");
    }
    static double speedFedWith(const std::string& options) {
        CCore holder(false);
        const ProgramRun result = run("feed six_knots.nmea --speed 0 --quiet " + options);
        EXPECT_EQ(result.code, 0) << result.err;
        return holder.values().fetch(ZAN_BSP, 0).record.number();
    }
};

TEST_F(CalibratedFeed, PassesARecordingThroughTheUsersCalibration) {
    EXPECT_EQ(speedFedWith(""), 7.0);
}

TEST_F(CalibratedFeed, StoresValuesAsTheyComeWithTheFlagRaw) {
    EXPECT_EQ(speedFedWith("--raw"), 6.0);
}

TEST(Program, FeedTellsAMissingFileFromAWrongName) {
    EXPECT_EQ(run("feed no_such_recording.nmea").code, 1);
    EXPECT_EQ(run("feed udp:99999").code, 2);
    EXPECT_EQ(run("feed").code, 2);
}

TEST(Program, ArgumentsBeyondAsciiArriveWhole) {
    // The shell is called in the narrow character set; what the program prints is UTF-8.
    const std::string typed = platform::hostPlatform().narrow(u"qq\u00E4qq", 16);
    if (typed.find('?') != std::string::npos) GTEST_SKIP() << "no such character in this code page";
    EXPECT_THAT(run("get " + typed).err, HasSubstr("\"qq\u00E4qq\""));
}

} // namespace
} // namespace tallowmere::test

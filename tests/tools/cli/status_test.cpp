#include "tests/tools/cli/command_fixture.hpp"

#include <gmock/gmock.h>

#include <cstring>

namespace tallowmere::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Status : public CommandTest {};

TEST_F(Status, WithoutASectionMakesNone) {
    const CommandRun result = run({"status"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, HasSubstr("none"));
    EXPECT_FALSE(sectionExists());
    EXPECT_TRUE(machine.errorsShown.empty());
}

TEST_F(Status, WritesNothingIntoTheSection) {
    holder();
    passSeconds(5); // an object that takes part would stamp the clock channel
    std::vector<std::byte> before(kSharedAreaBytes);
    std::memcpy(before.data(), &area(), before.size());
    (void)run({"status"});
    EXPECT_EQ(std::memcmp(before.data(), &area(), before.size()), 0);
}

TEST_F(Status, NamesMakerPathsAndHost) {
    holder();
    CommandRun result = run({"status"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, HasSubstr("ZanCore_363_253336, made by skipper\n"));
    EXPECT_THAT(result.out, HasSubstr("Host         none"));
    EXPECT_THAT(result.out, HasSubstr("Data folder  C:\\ProgramData\\"));
    EXPECT_THAT(result.out, HasSubstr(".db\n"));
    EXPECT_THAT(result.out, HasSubstr("marks.xml\n"));
    EXPECT_THAT(result.err, IsEmpty());
    area().hostWindow = 0x10001;
    EXPECT_THAT(run({"status"}).out, HasSubstr("Host         window 0x10001\n"));
}

TEST_F(Status, CountsTheOwnBoatsChannels) {
    store(ZAN_BSP, 6.4);
    store(ZAN_AWS, 12);
    passSeconds(60);
    store(ZAN_DEPTH, 20);
    EXPECT_THAT(run({"status"}).out, HasSubstr("Own boat     1 channels live, 2 stale, 410 without a value\n"));
}

TEST_F(Status, CountsTheOtherBoatsTogether) {
    EXPECT_THAT((holder(), run({"status"}).out), HasSubstr("Other boats  none\n"));
    store(ZAN_BSP, 6, 2);
    passSeconds(60);
    store(ZAN_BSP, 6, 1);
    store(ZAN_COG, 90, 3);
    const std::string out = run({"status"}).out;
    EXPECT_THAT(out, HasSubstr("Boats        4\n"));
    // Boat 1 keeps 413 channels and the clock, boats 2 and 3 keep 33 and the clock.
    EXPECT_THAT(out, HasSubstr("Other boats  2 of 3 live: 2 channels live, 1 stale, 476 without a value\n"));
}

TEST_F(Status, BoatCountBeyondTheLastBoatIsHeldThere) {
    area().boatCount = 4'000'000'000U;
    EXPECT_THAT(run({"status"}).out, HasSubstr("Boats        100\n"));
}

TEST_F(Status, SectionTooSmallIsNone) {
    const auto small = machine.holdSection(sectionName(), 4096);
    EXPECT_EQ(run({"status"}).code, 1);
}

TEST_F(Status, HostileSectionYieldsHarmlessText) {
    for (std::uint64_t seed = 1; seed <= 16; ++seed) {
        fillWithNoise(area(), seed);
        const CommandRun result = run({"status"});
        EXPECT_EQ(result.code, 0);
        EXPECT_TRUE(isHarmless(result.out)) << "seed " << seed;
    }
}

class CommandLine : public CommandTest {};

TEST_F(CommandLine, NamesTheCommandOrOptionThatThereIsNot) {
    const CommandRun command = run({"frob\x1bnicate", "BSP"});
    EXPECT_EQ(command.code, 2);
    EXPECT_EQ(command.err, "tallowmere: there is no command \"frob?nicate\"\nTry \"tallowmere --help\".\n");
    EXPECT_THAT(run({"--frobnicate"}).err, HasSubstr("there is no option \"--frobnicate\""));
    EXPECT_THAT(run({"calibration", "frobnicate"}).err, HasSubstr("there is no command \"frobnicate\""));
    EXPECT_THAT(run({"calibration"}).err, HasSubstr("a command is required\n"));
    EXPECT_THAT(run({}).err, HasSubstr("a command is required\n"));
    EXPECT_THAT(run({"get", "BSP", "--frobnicate"}).err, HasSubstr("--frobnicate"));
}

TEST_F(CommandLine, HelpGoesToStandardOutput) {
    const CommandRun result = run({"--help"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.err, IsEmpty());
    for (const char* text : {"list", "get", "set", "watch", "status", "Exit codes"})
        EXPECT_THAT(result.out, HasSubstr(text));
}

TEST_F(CommandLine, EachCommandHasHelp) {
    for (const char* command : {"list", "get", "set", "watch", "status"}) {
        const CommandRun result = run({command, "--help"});
        EXPECT_EQ(result.code, 0);
        EXPECT_THAT(result.out, HasSubstr(command));
    }
}

TEST_F(CommandLine, VersionIsTold) {
    const CommandRun result = run({"--version"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out, "tallowmere " TALLOWMERE_VERSION "\n");
}

TEST_F(CommandLine, WrongUsageIsToldOnStandardError) {
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{},
                                               {"nonsense"},
                                               {"get"},
                                               {"get", "--nonsense", "BSP"},
                                               {"set", "BSP"},
                                               {"set", "BSP", "1", "2"},
                                               {"get", "BSP", "--boat", "100"},
                                               {"get", "BSP", "--boat", "-1"},
                                               {"get", "BSP", "--boat", "65536"},
                                               {"get", "BSP", "--boat", "x"},
                                               {"status", "more"},
                                               {"watch", "--count", "-1"}}) {
        const CommandRun result = run(arguments);
        EXPECT_EQ(result.code, 2) << (arguments.empty() ? "" : arguments.back());
        EXPECT_THAT(result.out, IsEmpty());
        EXPECT_THAT(result.err, HasSubstr("--help"));
    }
    EXPECT_FALSE(sectionExists());
}

TEST_F(CommandLine, ControlCharactersInArgumentsAreNotEchoed) {
    const CommandRun result = run({"\x1b[2Jx"});
    EXPECT_EQ(result.code, 2);
    EXPECT_TRUE(isHarmless(result.err));
}

} // namespace
} // namespace tallowmere::test

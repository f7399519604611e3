#include "tests/tools/cli/command_fixture.hpp"
#include "tools/commands/text.hpp"

#include <gmock/gmock.h>

#include <algorithm>

namespace tallowmere::test {
namespace {

using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class List : public CommandTest {
  protected:
    static auto linesIn(const std::string& text) { return std::count(text.begin(), text.end(), '\n'); }
};

TEST_F(List, ShowsAllChannelsWithoutASection) {
    const CommandRun result = run({"list"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(linesIn(result.out), 415);
    EXPECT_THAT(result.out, ContainsRegex("\n  1  BSP +BSP +kt +boat speed\n"));
    EXPECT_THAT(result.out, ContainsRegex("\n 13  HDG +Heading +\u00B0 +bearing\n"));
    EXPECT_THAT(result.out, ContainsRegex("\n172  User 0 +User 0 +plain number\n"));
    EXPECT_THAT(result.err, IsEmpty());
}

TEST_F(List, MakesNoSection) {
    for (const char* what : {"--boats", "--vars", "--flags"}) (void)run({"list", what});
    (void)run({"list"});
    EXPECT_EQ(std::count(machine.trace.begin(), machine.trace.end(), "MapSection"), 0);
    EXPECT_FALSE(sectionExists());
}

TEST_F(List, ShowsNamesAndClassesOfTheSection) {
    writeText(area().settings[ZAN_USER_3].shortName, u"Keel");
    writeText(area().settings[ZAN_USER_3].longName, u"Keel pump");
    area().settings[ZAN_USER_3].unitClass = static_cast<std::int16_t>(UnitClass::Voltage);
    EXPECT_THAT(run({"list"}).out, ContainsRegex("\n175  Keel +Keel pump +V +voltage\n"));
}

TEST_F(List, ShowsBoatsWithTheirColours) {
    writeText(area().boats[3].name, u"Falcon");
    area().boats[3].mmsi = 235012345;
    area().boats[3].colour = 0x0000FF; // red
    store(ZAN_BSP, 6, 3);
    const CommandRun result = run({"list", "--boats"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(linesIn(result.out), 101);
    EXPECT_THAT(result.out, ContainsRegex("\n   3  Falcon +235012345 +#FF0000 +yes\n"));
    EXPECT_THAT(result.out, ContainsRegex("\n   4  Boat 4 +- +#90EE90 +-\n"));
}

TEST_F(List, ShowsVariablesAndIntegers) {
    holder();
    const CommandRun result = run({"list", "--vars"});
    EXPECT_EQ(linesIn(result.out), 1 + 80 + 1 + 1 + 13);
    EXPECT_THAT(result.out, ContainsRegex("\n +0 +15.85  boat length, m\n"));
    EXPECT_THAT(result.out, ContainsRegex("\n +79 +-\n"));
    EXPECT_THAT(result.out, ContainsRegex("\n +6 +5  fix mode"));
}

TEST_F(List, ShowsFlagsAsTheyStand) {
    area().systemFlags[24] = 200;
    const CommandRun result = run({"list", "--flags"});
    EXPECT_EQ(linesIn(result.out), 61);
    EXPECT_THAT(result.out, ContainsRegex("\n +0 +1  true bearings\n"));
    EXPECT_THAT(result.out, ContainsRegex("\n +24 +200  compute HeelRate and TrimRate\n"));
}

TEST_F(List, OfTheSectionsContentsNeedsASection) {
    for (const char* what : {"--boats", "--vars", "--flags"}) {
        const CommandRun result = run({"list", what});
        EXPECT_EQ(result.code, 1);
        EXPECT_THAT(result.out, IsEmpty());
        EXPECT_THAT(result.err, HasSubstr("no shared data"));
    }
}

TEST_F(List, LinesAreCutToTheTerminalsWidthAndWholeElsewhere) {
    columns = 40;
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"list"}, {"calibration", "list"}}) {
        const auto longest = [&] {
            std::istringstream lines(run(arguments).out);
            std::size_t most = 0;
            for (std::string line; std::getline(lines, line);) most = std::max(most, tools::width(line));
            return most;
        };
        terminal = true;
        EXPECT_EQ(longest(), 39U);
        terminal = false;
        EXPECT_GT(longest(), 40U);
    }
}

TEST_F(List, OfTwoThingsIsWrongUsage) {
    EXPECT_EQ(run({"list", "--boats", "--vars"}).code, 2);
}

TEST_F(List, HostileSectionYieldsHarmlessText) {
    for (std::uint64_t seed = 1; seed <= 8; ++seed) {
        fillWithNoise(area(), seed);
        for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
                 {"list"}, {"list", "--boats"}, {"list", "--vars"}, {"list", "--flags"}}) {
            const CommandRun result = run(arguments);
            EXPECT_EQ(result.code, 0);
            EXPECT_TRUE(isHarmless(result.out)) << arguments.back() << " seed " << seed;
        }
    }
}

} // namespace
} // namespace tallowmere::test

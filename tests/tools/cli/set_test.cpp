#include "tools/commands/set.hpp"

#include "tests/tools/cli/command_fixture.hpp"

#include <gmock/gmock.h>

namespace tallowmere::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Set : public CommandTest {
  protected:
    void SetUp() override { holder(); }
    double valueOf(ChannelIndex channel, BoatIndex boat = 0) {
        const ValueStore& values = holder().values();
        return values.recordAsDouble(channel, values.fetch(channel, boat).record).value;
    }
};

TEST(ParseValue, TakesFiniteNumbersAndNone) {
    EXPECT_EQ(tools::parseValue("6.4"), 6.4);
    EXPECT_EQ(tools::parseValue("-12"), -12.0);
    EXPECT_EQ(tools::parseValue("+1e3"), 1000.0);
    EXPECT_EQ(tools::parseValue("none"), NO_VALUE);
    EXPECT_EQ(tools::parseValue("NONE"), NO_VALUE);
}

TEST(ParseValue, RefusesEverythingElse) {
    for (const char* text :
         {"", "+", "-", "+-1", "six", "6,4", "6.4kt", " 6", "6 ", "nan", "inf", "-inf", "1e999", "0x10"})
        EXPECT_EQ(tools::parseValue(text), std::nullopt) << text;
}

TEST_F(Set, WritesAndShowsTheValue) {
    const CommandRun result = run({"set", "BSP", "6.4"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out, "BSP  6.40  kt  0.0 s\n");
    EXPECT_THAT(result.err, IsEmpty());
    EXPECT_EQ(valueOf(ZAN_BSP), 6.4);
}

TEST_F(Set, TakesNegativeNumbers) {
    EXPECT_EQ(run({"set", "Heel", "-12.5"}).code, 0);
    EXPECT_EQ(valueOf(ZAN_HEEL), -12.5);
    EXPECT_EQ(run({"set", "Heel", "--", "-.5"}).code, 0);
    EXPECT_EQ(valueOf(ZAN_HEEL), -0.5);
}

TEST_F(Set, WritesToTheBoatAskedFor) {
    EXPECT_EQ(run({"set", "Lat", "50.766", "--boat", "7"}).code, 0);
    EXPECT_EQ(valueOf(ZAN_LAT, 7), 50.766);
}

TEST_F(Set, NoneClearsTheChannel) {
    store(ZAN_BSP, 6.4);
    const CommandRun result = run({"set", "BSP", "none"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(valueOf(ZAN_BSP), NO_VALUE);
    EXPECT_THAT(result.out, HasSubstr("-"));
}

TEST_F(Set, ShowsTheValueThatWasStored) {
    EXPECT_THAT(run({"set", "TWD", "370"}).out, HasSubstr(" 10  "));
    EXPECT_THAT(run({"set", "Sail", "2.5"}).out, HasSubstr("3"));
}

TEST_F(Set, TellsThatTheOwnBoatsFixIsProtected) {
    const CommandRun result = run({"set", "Lat", "50.766"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, HasSubstr("system integer 6 is not 3"));
    EXPECT_EQ(valueOf(ZAN_LAT), NO_VALUE);
}

TEST_F(Set, WritesTheOwnBoatsFixWhileAHostAcceptsIt) {
    holder().system().setInteger(6, 3);
    const CommandRun result = run({"set", "Lat", "50.766"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, HasSubstr("50\u00B045.960'N"));
}

TEST_F(Set, TellsThatTheChannelIsBlocked) {
    area().settings[ZAN_TWS].blocked = 1;
    const CommandRun result = run({"set", "TWS", "12"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("blocked"));
}

TEST_F(Set, TellsThatTheChannelIsLocked) {
    area().settings[ZAN_TWS].writeLockable = 1;
    EXPECT_EQ(run({"set", "TWS", "12"}).code, 0);
    holder().system().setFlag(52, 1);
    const CommandRun result = run({"set", "TWS", "13"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("system flag 52"));
    EXPECT_EQ(valueOf(ZAN_TWS), 12);
}

TEST_F(Set, TellsThatTheBoatDoesNotKeepTheChannel) {
    const CommandRun result = run({"set", "RudderFwd", "3", "--boat", "2"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("boats 0 and 1 only"));
    EXPECT_EQ(run({"set", "RudderFwd", "3", "--boat", "1"}).code, 0);
}

TEST_F(Set, RefusesTheClock) {
    const CommandRun result = run({"set", "Time", "45000"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("clock"));
}

TEST_F(Set, TellsThatTheValueIsOutOfRange) {
    store(ZAN_AWS, 12);
    const CommandRun result = run({"set", "AWS", "200"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, HasSubstr("0 to 150"));
    EXPECT_EQ(valueOf(ZAN_AWS), NO_VALUE);
}

TEST_F(Set, TellsThatAnIntegerChannelCannotHoldTheValue) {
    const CommandRun result = run({"set", "Sail", "1e300"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("can't hold"));
}

TEST_F(Set, WarnsAboutAlternatingChannels) {
    const CommandRun result = run({"set", "Alt 0", "1"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.err, HasSubstr("stands for"));
}

TEST_F(Set, ValueThatIsNoNumberIsWrongUsage) {
    const CommandRun result = run({"set", "BSP", "fast\x1b[2J"});
    EXPECT_EQ(result.code, 2);
    EXPECT_THAT(result.err, HasSubstr("fast?[2J"));
    EXPECT_TRUE(isHarmless(result.err));
}

TEST_F(Set, UnknownChannelIsNotFound) {
    EXPECT_EQ(run({"set", "Bpsx", "1"}).code, 1);
}

class SetAlone : public CommandTest {};

TEST_F(SetAlone, SaysThatTheValueWillBeGone) {
    const CommandRun result = run({"set", "BSP", "6.4"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.err, HasSubstr("no other program"));
}

} // namespace
} // namespace tallowmere::test

#include "tests/tools/cli/command_fixture.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <numeric>

namespace tallowmere::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class Watch : public CommandTest {
  protected:
    void SetUp() override {
        holder();
        machine.onSleep = [this](unsigned milliseconds) {
            machine.now += std::int64_t{milliseconds} * 10'000;
            if (meanwhile) meanwhile(++sleeps_);
        };
    }
    std::function<void(int)> meanwhile; // called with the number of the sleep, from 1

  private:
    int sleeps_ = 0;
};

TEST_F(Watch, PlainFirstRoundShowsEveryChannel) {
    store(ZAN_BSP, 6.4);
    const CommandRun result = run({"watch", "BSP", "Mk Lat", "--count", "1"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out, "2025-11-22T00:00:00.0Z\tBSP\t6.40\tkt\t0.0\t\n"
                          "2025-11-22T00:00:00.0Z\tMk Lat\t-\t\t-\t\n");
}

TEST_F(Watch, PlainLaterRoundsShowChangesOnly) {
    store(ZAN_BSP, 6.4);
    store(ZAN_AWS, 12);
    meanwhile = [this](int sleep) {
        if (sleep == 3) store(ZAN_BSP, 6.5);
        if (sleep == 5) store(ZAN_AWS, 12); // written, not changed
    };
    const CommandRun result = run({"watch", "BSP", "AWS", "--count", "4", "--interval", "0.1"});
    EXPECT_EQ(result.out, "2025-11-22T00:00:00.0Z\tBSP\t6.40\tkt\t0.0\t\n"
                          "2025-11-22T00:00:00.0Z\tAWS\t12.0\tkt\t0.0\t\n"
                          "2025-11-22T00:00:00.2Z\tBSP\t6.50\tkt\t0.1\t\n");
}

TEST_F(Watch, PlainShowsAValueThatBecomesStale) {
    store(ZAN_BSP, 6.4);
    const CommandRun result = run({"watch", "BSP", "--count", "13"});
    EXPECT_EQ(result.out, "2025-11-22T00:00:00.0Z\tBSP\t6.40\tkt\t0.0\t\n"
                          "2025-11-22T00:00:11.0Z\tBSP\t6.40\tkt\t11.0\tstale\n");
}

TEST_F(Watch, PlainHasNoEscapeSequence) {
    EXPECT_TRUE(isHarmless(run({"watch", "--count", "3"}).out));
}

TEST_F(Watch, WithoutChannelsShowsTheUsualOnes) {
    const std::string out = run({"watch", "--count", "1"}).out;
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 13);
    for (const char* name :
         {"BSP", "AWA", "AWS", "TWA", "TWS", "TWD", "HDG", "COG", "SOG", "Lat", "Lon", "Depth", "Heel"})
        EXPECT_THAT(out, HasSubstr(std::string(name).append("\t-\t")));
}

TEST_F(Watch, CountIsTheNumberOfRounds) {
    EXPECT_EQ(run({"watch", "--count", "4", "--interval", "2"}).code, 0);
    const unsigned slept = std::accumulate(machine.sleeps.begin(), machine.sleeps.end(), 0U);
    EXPECT_EQ(slept, 3 * 2000U); // none after the last round
}

TEST_F(Watch, EndsSoonWhenAskedTo) {
    meanwhile = [this](int sleep) { stop = sleep == 2; };
    EXPECT_EQ(run({"watch", "--interval", "3600"}).code, 0);
    EXPECT_EQ(machine.sleeps.size(), 2U);
    EXPECT_LE(*std::max_element(machine.sleeps.begin(), machine.sleeps.end()), 100U);
}

TEST_F(Watch, OnlyLooks) {
    store(ZAN_BSP, 6.4);
    passSeconds(2);
    const std::vector<unsigned char> before(reinterpret_cast<unsigned char*>(&area()),
                                            reinterpret_cast<unsigned char*>(&area() + 1));
    EXPECT_EQ(run({"watch", "--count", "2"}).code, 0);
    EXPECT_EQ(std::memcmp(before.data(), &area(), sizeof(SharedArea)), 0) << "not even the clock was stamped";
}

TEST_F(Watch, TellsThatTheSectionHasGoneAndFindsTheNext) {
    store(ZAN_BSP, 6.4);
    meanwhile = [this](int sleep) {
        if (sleep == 30) letGo();
        if (sleep == 60) store(ZAN_BSP, 7.5);
    };
    EXPECT_EQ(run({"watch", "BSP", "--count", "5"}).out, "2025-11-22T00:00:00.0Z\tBSP\t6.40\tkt\t0.0\t\n"
                                                         "2025-11-22T00:00:02.0Z\tBSP\t-\tkt\t-\t\n"
                                                         "2025-11-22T00:00:03.0Z\tBSP\t7.50\tkt\t0.0\t\n");
}

class WatchAlone : public CommandTest {
  protected:
    void SetUp() override {
        machine.onSleep = [this](unsigned milliseconds) {
            machine.now += std::int64_t{milliseconds} * 10'000;
            EXPECT_FALSE(alone && sectionExists());
        };
    }
    bool alone = true;
};

TEST_F(WatchAlone, SaysSoAndItsExitCodeToo) {
    for (const char* count : {"1", "3"}) {
        const CommandRun result = run({"watch", "BSP", "--count", count});
        EXPECT_EQ(result.code, 1);
        EXPECT_THAT(result.out, IsEmpty());
        EXPECT_THAT(result.err, HasSubstr("there is no shared data"));
        EXPECT_EQ(run({"watch", "BSP", "--json", "--count", count}).out, "");
    }
    terminal = true;
    const CommandRun result = run({"watch", "BSP", "--count", "2"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, HasSubstr("no shared data; waiting"));
    EXPECT_THAT(result.err, HasSubstr("there is no shared data"));
}

TEST_F(WatchAlone, WaitsForTheSection) {
    alone = false;
    int sleeps = 0;
    machine.onSleep = [&](unsigned milliseconds) {
        machine.now += std::int64_t{milliseconds} * 10'000;
        if (++sleeps == 30) store(ZAN_BSP, 6.4);
    };
    const CommandRun result = run({"watch", "BSP", "--count", "4"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.err, HasSubstr("; waiting"));
    EXPECT_EQ(result.out, "2025-11-22T00:00:02.0Z\tBSP\t6.40\tkt\t0.5\t\n");
}

TEST_F(Watch, TerminalTableIsDrawnOverItself) {
    terminal = true;
    store(ZAN_BSP, 6.4);
    meanwhile = [this](int sleep) {
        if (sleep == 1) store(ZAN_BSP, 7.5);
    };
    const std::string out = run({"watch", "BSP", "--count", "2", "--interval", "0.05"}).out;
    EXPECT_TRUE(out.starts_with("\x1b[?1049h\x1b[?25l"));
    EXPECT_THAT(out, HasSubstr("\x1b[3;1HBSP       6.40  kt    0.0 s\x1b[0m\x1b[K"));
    EXPECT_THAT(out, HasSubstr("\x1b[3;1HBSP       7.50  kt    0.0 s\x1b[0m\x1b[K"));
    EXPECT_EQ(out.substr(0, out.find("\x1b[?1049l")).find('\n'), std::string::npos); // nothing scrolls
}

TEST_F(Watch, TerminalEndsWithTheLastTableOnTheFirstScreen) {
    terminal = true;
    store(ZAN_BSP, 6.4);
    const std::string out = run({"watch", "BSP", "--count", "1"}).out;
    const std::string after = out.substr(out.find("\x1b[?25h\x1b[?1049l"));
    EXPECT_THAT(after, HasSubstr("Own boat"));
    EXPECT_THAT(after, HasSubstr("BSP       6.40  kt    0.0 s"));
    EXPECT_TRUE(out.ends_with("\n"));
}

TEST_F(Watch, TerminalDimsStaleValuesAndNamesThem) {
    terminal = true;
    store(ZAN_BSP, 6.4);
    passSeconds(20);
    EXPECT_THAT(run({"watch", "BSP", "--count", "1"}).out, HasSubstr("\x1b[2mBSP       6.40  kt    20 s  stale"));
}

TEST_F(Watch, TerminalLinesAreShortenedToItsWidthWithASign) {
    terminal = true;
    columns = 12;
    store(ZAN_BSP, 6.4);
    const std::string out = run({"watch", "BSP", "--count", "1"}).out;
    EXPECT_THAT(out, HasSubstr("\x1b[3;1HBSP       \u2026\x1b[0m"));
    columns = -5; // a terminal that answers nonsense
    EXPECT_EQ(run({"watch", "BSP", "--count", "1"}).code, 0);
}

TEST_F(Watch, TerminalTitleNamesTheBoat) {
    terminal = true;
    writeText(area().boats[3].name, u"Falcon\x1b[2J");
    writeText(area().boats[4].name, u"Boat 4");
    EXPECT_THAT(run({"watch", "--boat", "3", "--count", "1"}).out, HasSubstr("Boat 3 (Falcon?[2J)"));
    EXPECT_THAT(run({"watch", "--boat", "4", "--count", "1"}).out, HasSubstr("Boat 4  2025-"));
}

TEST_F(Watch, HostileNamesAddNoEscapeSequence) {
    terminal = true;
    fillWithNoise(area(), 7);
    std::string out = run({"watch", "1", "172", "180", "--count", "1"}).out;
    for (const char* own :
         {"\x1b[?1049h", "\x1b[?25l", "\x1b[2J", "\x1b[1m", "\x1b[2m", "\x1b[0m", "\x1b[K", "\x1b[J", "\x1b[?25h",
          "\x1b[?1049l", "\x1b[1;1H", "\x1b[2;1H", "\x1b[3;1H", "\x1b[4;1H", "\x1b[5;1H"})
        for (std::size_t at = out.find(own); at != std::string::npos; at = out.find(own))
            out.erase(at, std::string(own).size());
    EXPECT_TRUE(isHarmless(out));
}

TEST_F(Watch, UnknownChannelIsNotFound) {
    const CommandRun result = run({"watch", "Bspp"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, IsEmpty());
}

TEST_F(Watch, AbsurdIntervalsAreWrongUsage) {
    for (const char* interval : {"0", "-1", "nan", "1e9", "x"})
        EXPECT_EQ(run({"watch", "--interval", interval, "--count", "1"}).code, 2) << interval;
}

} // namespace
} // namespace tallowmere::test

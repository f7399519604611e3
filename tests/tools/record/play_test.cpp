#include "tests/tools/record/recording_fixture.hpp"

#include "core/channels/replay_sign.hpp"
#include "core/channels/system_values.hpp"
#include "tools/feed/feed_host.hpp"
#include "tools/record/recorder.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <tuple>

namespace tallowmere::test {
namespace {

using recording::Value;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::SizeIs;

const std::string kHeader = "time,boat,channel,name,unit,class,kind,value\n";
const std::string kStart = "2025-11-21T12:00:00.0000000Z,,,test,,,start,\n";

std::string row(const std::string& second, ChannelIndex channel, const std::string& value, int boat = 0,
                const std::string& kind = "double") {
    return "2025-11-21T12:00:" + second + "Z," + std::to_string(boat) + "," + std::to_string(channel) + ",,,0," + kind +
           "," + value + "\n";
}

class Play : public RecordingTest {
  protected:
    [[nodiscard]] std::int64_t stampOf(ChannelIndex channel, BoatIndex boat = 0) {
        return *valueSlotOf(area(), channel, boat).stamp;
    }
    [[nodiscard]] Record recordOf(ChannelIndex channel, BoatIndex boat = 0) {
        return loadRecord(*valueSlotOf(area(), channel, boat).current);
    }
    struct Seen {
        std::int64_t stamp;
        double value;
        friend bool operator==(const Seen&, const Seen&) = default;
    };
    /// Plays and notes each value of a channel as it comes.
    std::vector<Seen> seenWhile(std::vector<std::string> arguments, ChannelIndex channel, BoatIndex boat = 0) {
        std::vector<Seen> seen;
        static_cast<void>(area());
        whileAsleep = [&] {
            const Record record = recordOf(channel, boat);
            const Seen now{stampOf(channel, boat), record.number()};
            if (record.holdsNumber() && now.stamp != 0 && (seen.empty() || !(seen.back() == now))) seen.push_back(now);
        };
        arguments.insert(arguments.begin(), "play");
        last = run(arguments);
        whileAsleep = nullptr;
        return seen;
    }
    CommandRun last;
};

TEST_F(Play, ValuesComeWithStampsOfNowAndTheirSpacing) {
    writeFile("a.csv", kHeader + kStart + row("00", ZAN_BSP, "6.4") + row("01.5000001", ZAN_BSP, "6.5") +
                           row("02", ZAN_BSP, "6.6") + row("03", ZAN_AWA, "1"));
    const std::int64_t began = machine.now;
    const auto seen = seenWhile({path("a.csv")}, ZAN_BSP);
    EXPECT_EQ(last.code, 0) << last.err;
    EXPECT_THAT(seen, ElementsAre(Seen{began, 6.4}, Seen{began + 15'000'001, 6.5}, Seen{began + 2 * kSecond, 6.6}));
    EXPECT_GE(machine.now - began, 3 * kSecond);
}

TEST_F(Play, SpeedShortensTheSpacing) {
    writeFile("a.csv",
              kHeader + kStart + row("00", ZAN_BSP, "6.4") + row("10", ZAN_BSP, "6.5") + row("20", ZAN_AWA, "1"));
    const std::int64_t began = machine.now;
    const auto seen = seenWhile({path("a.csv"), "--speed", "10"}, ZAN_BSP);
    EXPECT_THAT(seen, ElementsAre(Seen{began, 6.4}, Seen{began + kSecond, 6.5}));
}

TEST_F(Play, AtOnceWaitsForNothing) {
    writeFile("a.csv", kHeader + kStart + row("00", ZAN_BSP, "6.4") + row("59", ZAN_BSP, "6.5"));
    const std::int64_t began = machine.now;
    EXPECT_EQ(run({"play", path("a.csv"), "--speed", "0"}).code, 0);
    EXPECT_EQ(machine.now - began, kSecond) << "to be seen before it is taken out";
}

TEST_F(Play, FilesFollowOneAnother) {
    writeFile("a.csv", kHeader + kStart + row("00", ZAN_BSP, "1") + row("01", ZAN_AWA, "0"));
    writeFile("b.csv", kHeader + kStart + row("00", ZAN_BSP, "2") + row("01", ZAN_AWA, "0"));
    const auto seen = seenWhile({path("a.csv"), path("b.csv")}, ZAN_BSP);
    ASSERT_THAT(seen, SizeIs(2));
    EXPECT_EQ(seen[1].value, 2.0);
}

TEST_F(Play, LoopStartsAgainUntilTheUserEndsIt) {
    writeFile("a.csv", kHeader + kStart + row("00", ZAN_BSP, "1") + row("01", ZAN_BSP, "2") + row("02", ZAN_AWA, "2"));
    int sleeps = 0;
    machine.onSleep = [&](unsigned milliseconds) {
        machine.now += std::int64_t{milliseconds} * 10'000;
        if (++sleeps == 100) stop = true;
    };
    EXPECT_THAT(run({"play", path("a.csv"), "--loop"}).err, HasSubstr("7 values played"));
}

TEST_F(Play, AnUnplayableFileDoesNotLoopForEver) {
    writeFile("a.csv", kHeader);
    EXPECT_EQ(run({"play", path("a.csv"), "--loop"}).code, 0);
}

TEST_F(Play, FromBeginsWithWhatStoodThereAndItsAge) {
    writeFile("a.csv", kHeader + kStart + row("00", ZAN_BSP, "1") + row("00", ZAN_AWA, "30") + row("05", ZAN_BSP, "2") +
                           row("10", ZAN_BSP, "3") + row("11", ZAN_AWS, "3"));
    const std::int64_t began = machine.now;
    const auto seen = seenWhile({path("a.csv"), "--from", "+8"}, ZAN_BSP);
    EXPECT_THAT(seen, ElementsAre(Seen{began - 3 * kSecond, 2.0}, Seen{began + 2 * kSecond, 3.0}));
    const auto angle = seenWhile({path("a.csv"), "--from", "2025-11-21T12:00:08Z"}, ZAN_AWA);
    ASSERT_THAT(angle, SizeIs(1));
    EXPECT_EQ(angle[0].value, 30.0);
}

TEST_F(Play, ToEndsThere) {
    writeFile("a.csv", kHeader + kStart + row("00", ZAN_BSP, "1") + row("05", ZAN_BSP, "2") + row("10", ZAN_BSP, "3"));
    EXPECT_THAT(run({"play", path("a.csv"), "--to", "+5"}).err, HasSubstr("2 values played"));
    EXPECT_EQ(run({"play", path("a.csv"), "--to", "tomorrow"}).code, 2);
}

TEST_F(Play, APartWithoutValuesIsSaidAndIsNoSuccess) {
    writeFile("a.csv", kHeader + kStart + row("00", ZAN_BSP, "1") + row("05", ZAN_BSP, "2"));
    for (const std::vector<std::string>& part : std::vector<std::vector<std::string>>{
             {"--from", "+500"}, {"--from", "+4", "--to", "+2"}, {"--to", "2025-11-21T11:00:00Z"}}) {
        std::vector<std::string> arguments{"play", path("a.csv")};
        arguments.insert(arguments.end(), part.begin(), part.end());
        const CommandRun result = run(arguments);
        EXPECT_EQ(result.code, 1) << part[1];
        EXPECT_THAT(result.err, HasSubstr("0 values played")) << part[1];
        EXPECT_THAT(result.err, HasSubstr("no values lie between --from and --to")) << part[1];
    }
    const CommandRun unreadable = run({"play", path("a.csv"), path("none.csv"), "--from", "+500"});
    EXPECT_EQ(unreadable.code, 1);
    EXPECT_THAT(unreadable.err, HasSubstr("0 values played"));
    EXPECT_THAT(unreadable.err, Not(HasSubstr("no values lie"))) << "the other file may have some";
    const CommandRun between = run({"play", path("a.csv"), "--from", "+2", "--to", "+4"});
    EXPECT_EQ(between.code, 0) << "the first value stood there";
    EXPECT_THAT(between.err, HasSubstr("1 values played"));
}

TEST_F(Play, OfAFileOfWhichNothingWasReadNothingIsMissing) {
    writeFile("a.csv", "name,price\n");
    const CommandRun result = run({"play", path("a.csv")});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("it is no recording"));
    EXPECT_THAT(result.err, Not(HasSubstr("the rest of it is missing")));
}

TEST_F(Play, AnHourWithoutARowIsNotWaitedFor) {
    writeFile("a.csv", kHeader + kStart + row("00", ZAN_BSP, "1") + "2525-11-21T12:00:00Z,0,1,,,0,double,2\n" +
                           row("02", ZAN_BSP, "3"));
    const std::int64_t began = machine.now;
    EXPECT_EQ(run({"play", path("a.csv")}).code, 0);
    EXPECT_LT(machine.now - began, 10 * kSecond);
}

TEST_F(Play, GoesOnWhereItWasWhenTheClockIsSet) {
    for (const std::int64_t step : {-3600 * kSecond, 3600 * kSecond}) {
        writeFile("a.csv", kHeader + kStart + row("00", ZAN_BSP, "1") + row("04", ZAN_BSP, "2") +
                               row("06", ZAN_BSP, "3") + row("07", ZAN_AWA, "1"));
        int sleeps = 0;
        std::vector<double> seen;
        static_cast<void>(area());
        whileAsleep = [&] {
            if (++sleeps == 20) machine.now += step; // after a second
            const double value = recordOf(ZAN_BSP).number();
            if (recordOf(ZAN_BSP).holdsNumber() && (seen.empty() || seen.back() != value)) seen.push_back(value);
        };
        EXPECT_EQ(run({"play", path("a.csv")}).code, 0);
        whileAsleep = nullptr;
        EXPECT_THAT(seen, ElementsAre(1.0, 2.0, 3.0));
        EXPECT_GE(sleeps, 80) << "the rest is neither skipped";
        EXPECT_LE(sleeps, 200) << "nor waited for by an hour";
    }
}

TEST_F(Play, ValuesGoInAsTheyWereWithoutCalibrationRangeOrDerivedValues) {
    writeOnce(area().settings[ZAN_AWA].calibrate, 1);
    holder().system().setFlag(system_flag::kCorrectMastAngle, 1);
    holder().system().setFlag(system_flag::kComputeTurnRate, 1);
    writeOnce(area().settings[ZAN_ROT].blocked, 1);
    store(ZAN_MASTANG, 5.0);
    writeFile("a.csv", kHeader + kStart + row("00", ZAN_AWA, "185") + row("00", ZAN_HDG, "10") +
                           row("02", ZAN_HDG, "20") + row("02", ZAN_ROT, "0.25") + row("04", ZAN_BSP, "1"));
    double angle = 0;
    double rate = 0;
    whileAsleep = [&] {
        if (recordOf(ZAN_AWA).holdsNumber()) angle = recordOf(ZAN_AWA).number();
        if (recordOf(ZAN_ROT).holdsNumber()) rate = recordOf(ZAN_ROT).number();
    };
    EXPECT_EQ(run({"play", path("a.csv")}).code, 0);
    EXPECT_EQ(angle, 185.0) << "neither less the mast angle nor brought into range";
    EXPECT_EQ(rate, 0.25) << "as recorded, though blocked for clients";
}

TEST_F(Play, EveryKindAndMissingValuesOfAnyBoatGoIn) {
    store(ZAN_SOG, 9.0);
    writeFile("a.csv", kHeader + kStart + row("00", ZAN_SAIL, "-5", 0, "integer") +
                           row("00", ZAN_GPS_TIME, "134082432000000007", 0, "time") +
                           row("00", ZAN_HEEL, "200", 0, "byte") + row("00", ZAN_SOG, "") +
                           row("00", ZAN_SOG, "7", 99) + row("01", ZAN_BSP, "1"));
    bool seen = false;
    whileAsleep = [&] {
        if (std::exchange(seen, true)) return;
        EXPECT_EQ(recordOf(ZAN_SAIL), Record::ofInteger(-5));
        EXPECT_EQ(recordOf(ZAN_GPS_TIME), Record::ofTicks(134'082'432'000'000'007));
        EXPECT_EQ(recordOf(ZAN_HEEL), (Record{0, 200}));
        EXPECT_EQ(recordOf(ZAN_SOG), Record::ofNumber(NO_VALUE));
        EXPECT_EQ(recordOf(ZAN_SOG, 99), Record::ofNumber(7.0));
        EXPECT_EQ(area().boatCount, 100U);
    };
    EXPECT_EQ(run({"play", path("a.csv")}).code, 0);
    EXPECT_TRUE(seen);
}

TEST_F(Play, SaysReplayWhileItPlaysAndNoLonger) {
    writeText(area().boats[0].name, u"Falcon");
    writeFile("a.csv", kHeader + kStart + row("00", ZAN_BSP, "6.4") + row("01", ZAN_BSP, "6.5"));
    bool seen = false;
    whileAsleep = [&] {
        if (std::exchange(seen, true)) return;
        EXPECT_EQ(readText(area().boats[0].name), u"[REPLAY] Falcon");
        EXPECT_THAT(run({"list", "--boats"}).out, HasSubstr("[REPLAY] Falcon"));
        EXPECT_THAT(run({"status"}).out, HasSubstr("REPLAY"));
        EXPECT_THAT(run({"watch", "BSP", "--count", "1"}).out, HasSubstr("\treplay\n"));
        EXPECT_THAT(run({"get", "BSP"}).err, HasSubstr("REPLAY"));
        terminal = true;
        EXPECT_THAT(run({"watch", "BSP", "--count", "1", "--boat", "3"}).out, HasSubstr("REPLAY: Boat 3"));
        EXPECT_THAT(run({"watch", "BSP", "--count", "1"}).out, HasSubstr("REPLAY: Own boat (Falcon)"));
        terminal = false;
    };
    EXPECT_EQ(run({"play", path("a.csv")}).code, 0);
    whileAsleep = nullptr;
    EXPECT_TRUE(seen);
    EXPECT_EQ(readText(area().boats[0].name), u"Falcon");
    EXPECT_THAT(run({"status"}).out, Not(HasSubstr("REPLAY")));
    EXPECT_THAT(run({"watch", "BSP", "--count", "1"}).out, Not(HasSubstr("replay")));
}

TEST_F(Play, TheSignIsTakenAwayWhenTheUserEndsIt) {
    static_cast<void>(area());
    writeFile("a.csv", kHeader + kStart + row("00", ZAN_BSP, "6.4") + row("50", ZAN_BSP, "6.5"));
    whileAsleep = [&] { stop = true; };
    EXPECT_EQ(run({"play", path("a.csv")}).code, 0);
    EXPECT_EQ(readText(area().boats[0].name), u"");
    EXPECT_FALSE(recordOf(ZAN_BSP).holdsNumber());
}

TEST_F(Play, ASignThatAKilledPlayerLeftIsTakenAway) {
    writeText(area().boats[0].name, u"[REPLAY] Falcon");
    writeFile("a.csv", kHeader + kStart + row("00", ZAN_BSP, "6.4"));
    EXPECT_EQ(run({"play", path("a.csv")}).code, 0);
    EXPECT_EQ(readText(area().boats[0].name), u"Falcon");
}

TEST_F(Play, WhatAKilledPlayerLeftIsTakenOutBeforeTheNextPlays) {
    store(ZAN_BSP, 5.0);
    store(ZAN_SOG, 5.0, 7);
    store(ZAN_STBD_LAT, 50.0); // never stale
    writeText(area().boats[0].name, u"[REPLAY]");
    writeFile("a.csv", kHeader + kStart + row("00", ZAN_AWA, "30") + row("01", ZAN_AWA, "31"));
    bool seen = false;
    whileAsleep = [&] {
        if (std::exchange(seen, true)) return;
        EXPECT_FALSE(recordOf(ZAN_BSP).holdsNumber());
        EXPECT_FALSE(recordOf(ZAN_SOG, 7).holdsNumber());
        EXPECT_FALSE(recordOf(ZAN_STBD_LAT).holdsNumber());
        EXPECT_EQ(recordOf(ZAN_AWA).number(), 30.0);
        EXPECT_TRUE(isReplay(&area()));
    };
    const CommandRun result = run({"play", path("a.csv")});
    EXPECT_EQ(result.code, 0);
    EXPECT_TRUE(seen);
    EXPECT_THAT(result.err, HasSubstr("a recording was played here"));
    EXPECT_FALSE(isReplay(&area()));
}

TEST_F(Play, GivesWayToAHostThatComes) {
    writeText(area().boats[0].name, u"Falcon");
    writeFile("a.csv",
              kHeader + kStart + row("00", ZAN_BSP, "6.4") + row("00", ZAN_AWA, "30") + row("50", ZAN_BSP, "6.5"));
    const std::int64_t began = machine.now;
    std::unique_ptr<feed::FeedHost> host;
    int sleeps = 0;
    whileAsleep = [&] {
        if (++sleeps != 10) return;
        host = std::make_unique<feed::FeedHost>(platform, machine.makeWindow(), [](std::string_view) {});
        host->sink().write(ZAN_BSP, 7.7, 0);
    };
    const CommandRun result = run({"play", path("a.csv")});
    whileAsleep = nullptr;
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("gives way to live values"));
    EXPECT_LT(machine.now - began, 2 * kSecond);
    EXPECT_EQ(readText(area().boats[0].name), u"Falcon");
    EXPECT_EQ(recordOf(ZAN_BSP).number(), 7.7) << "live";
    EXPECT_FALSE(recordOf(ZAN_AWA).holdsNumber()) << "played";
}

TEST_F(Play, ForcedBesideAHostItsSignStaysWhileItPlays) {
    const auto host = std::make_unique<feed::FeedHost>(platform, machine.makeWindow(), [](std::string_view) {});
    writeFile("a.csv", kHeader + kStart + row("00", ZAN_BSP, "6.4") + row("02", ZAN_BSP, "6.5"));
    int sleeps = 0;
    whileAsleep = [&] {
        if (++sleeps == 10) writeText(area().boats[0].name, u"Falcon"); // no row comes for a while
        EXPECT_EQ(isReplay(&area()), sleeps != 10) << sleeps;
    };
    EXPECT_EQ(run({"play", path("a.csv"), "--force"}).code, 0);
    EXPECT_GT(sleeps, 20);
    EXPECT_EQ(readText(area().boats[0].name), u"Falcon");
}

TEST_F(Play, TheSignComesBackWhenTheBoatIsRenamedAndTheNewNameStays) {
    static_cast<void>(area());
    writeFile("a.csv",
              kHeader + kStart + row("00", ZAN_BSP, "6.4") + row("01", ZAN_BSP, "6.5") + row("02", ZAN_BSP, "6"));
    int sleeps = 0;
    whileAsleep = [&] {
        if (++sleeps == 1) writeText(area().boats[0].name, u"Osprey");
        if (sleeps == 30) {
            EXPECT_EQ(readText(area().boats[0].name), u"[REPLAY] Osprey");
        }
    };
    EXPECT_EQ(run({"play", path("a.csv")}).code, 0);
    EXPECT_GE(sleeps, 30);
    EXPECT_EQ(readText(area().boats[0].name), u"Osprey");
}

TEST_F(Play, ALongNameComesBackWhole) {
    writeText(area().boats[0].name, u"A name of thirty-one characters");
    writeFile("a.csv", kHeader + kStart + row("00", ZAN_BSP, "6.4"));
    EXPECT_EQ(run({"play", path("a.csv")}).code, 0);
    EXPECT_EQ(readText(area().boats[0].name), u"A name of thirty-one characters");
}

TEST_F(Play, WhatWasPlayedIsTakenOutAtTheEndButNotWhatOthersWrote) {
    static_cast<void>(area());
    writeFile("a.csv",
              kHeader + kStart + row("00", ZAN_BSP, "6.4") + row("00", ZAN_AWA, "30") + row("01", ZAN_AWS, "6.5"));
    whileAsleep = [&] { store(ZAN_AWA, 31.0); };
    EXPECT_EQ(run({"play", path("a.csv")}).code, 0);
    EXPECT_FALSE(recordOf(ZAN_BSP).holdsNumber());
    EXPECT_EQ(recordOf(ZAN_AWA), Record::ofNumber(31.0));
}

TEST_F(Play, BesideAHostOnlyWhenForced) {
    writeOnce(area().hostWindow, 77);
    writeFile("a.csv", kHeader + kStart + row("00", ZAN_BSP, "6.4"));
    const CommandRun refused = run({"play", path("a.csv")});
    EXPECT_EQ(refused.code, 1);
    EXPECT_THAT(refused.err, HasSubstr("--force"));
    EXPECT_EQ(readText(area().boats[0].name), u"");
    EXPECT_EQ(run({"play", path("a.csv"), "--force"}).code, 0);
}

TEST_F(Play, RefusesWhileAnotherOnePlaysAndLeavesItsValuesAlone) {
    writeText(area().boats[0].name, u"Falcon");
    writeFile("a.csv", kHeader + kStart + row("00", ZAN_BSP, "6.4") + row("04", ZAN_AWA, "30"));
    writeFile("b.csv", kHeader + kStart + row("00", ZAN_BSP, "9.9"));
    int sleeps = 0;
    whileAsleep = [&] {
        if (++sleeps != 10) return;
        for (const std::string& force : {std::string("--loop"), std::string("--force")}) {
            const CommandRun second = run({"play", path("b.csv"), force});
            EXPECT_EQ(second.code, 1);
            EXPECT_EQ(second.err, "tallowmere play: another program is playing a recording, and the values of both "
                                  "would be mixed. End it first\n");
            EXPECT_EQ(recordOf(ZAN_BSP).number(), 6.4);
            EXPECT_EQ(readText(area().boats[0].name), u"[REPLAY] Falcon");
        }
    };
    EXPECT_EQ(run({"play", path("a.csv")}).code, 0);
    EXPECT_GT(sleeps, 80) << "the first played to its end";
    whileAsleep = nullptr;
    EXPECT_EQ(run({"play", path("b.csv")}).code, 0) << "its turn has come";
}

TEST_F(Play, WithoutKnowingWhetherAnotherOnePlaysNothingIsChanged) {
    store(ZAN_BSP, 5.0);
    writeText(area().boats[0].name, u"[REPLAY]");
    writeFile("a.csv", kHeader + kStart + row("00", ZAN_BSP, "6.4"));
    machine.failOnce(Step::CreateSection, 2); // the first is the shared data
    const CommandRun result = run({"play", path("a.csv")});
    EXPECT_EQ(result.code, 3);
    EXPECT_THAT(result.err, HasSubstr("can't be told"));
    EXPECT_EQ(recordOf(ZAN_BSP).number(), 5.0);
}

TEST_F(Play, DamagedRowsAreToldAndTheRestPlays) {
    writeFile("a.csv", kHeader + kStart + row("00", 0, "1") + row("00", 117, "1") + row("00", 414, "1") +
                           row("00", 1, "1", 100) + row("00", 1, "six") + row("00", 1, "6", 0, "colour") + "short\n" +
                           row("00", ZAN_SAIL, "2147483648", 0, "integer") + row("00", ZAN_BSP, "6.4") +
                           row("00", ZAN_ROT, "1", 5) + std::string(10'000, 'x') + "\n");
    const CommandRun result = run({"play", path("a.csv")});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.err, HasSubstr("a.csv: line 3: this channel is never recorded; left out"));
    EXPECT_THAT(result.err, HasSubstr("a.csv: line 5: there is no such channel"));
    EXPECT_THAT(result.err, HasSubstr("a.csv: line 6: there is no such boat"));
    EXPECT_THAT(result.err, HasSubstr("1 values played, 9 damaged rows left out, 1 left out of channels"));
}

TEST_F(Play, AFileThatIsNoRecordingIsSaidAndTheNextPlays) {
    writeFile("a.csv", "nothing of ours\n");
    writeFile("b.csv", kHeader + kStart + row("00", ZAN_BSP, "6.4"));
    const CommandRun result = run({"play", path("a.csv"), path("missing.csv"), path("b.csv")});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("a.csv: it is no recording"));
    EXPECT_THAT(result.err, HasSubstr("missing.csv: there is no such file"));
    EXPECT_THAT(result.err, HasSubstr("1 values played"));
}

TEST_F(Play, RecordPlayRecordGivesTheSameBitsAndSpacing) {
    for (const std::string& format : {std::string(".sqlite"), std::string(".csv")}) {
        // Steps of odd lengths, of own and other boats, with a value taken away.
        int step = 0;
        store(ZAN_BSP, 5.0);
        store(ZAN_SOG, 5.0, 7);
        whileAsleep = [&] {
            ++step;
            machine.now += 137 * step;
            if (step % 3 == 0) store(ZAN_BSP, 5.0 + 0.1 * step);
            if (step % 4 == 0) store(ZAN_SOG, 1.0 / step, 7);
            if (step == 25) store(ZAN_HDG, NO_VALUE);
            if (step % 7 == 0 && step < 25) store(ZAN_HDG, 359.0 - step);
        };
        ASSERT_EQ(run({"record", "-o", path("first" + format), "--seconds", "1", "--rate", "100"}).code, 0);
        whileAsleep = nullptr;
        const Content first = contentOf("first" + format);
        ASSERT_GT(first.values.size(), 40U);

        for (const ChannelIndex channel : {ZAN_BSP, ZAN_HDG}) put(channel, Record::ofNumber(NO_VALUE), 0, kNoTime);
        put(ZAN_SOG, Record::ofNumber(NO_VALUE), 7, kNoTime);
        const std::string copy = path("second" + format);
        auto opened = format == ".csv" ? recording::openCsvWriter(copy) : recording::openSqliteWriter(copy);
        ASSERT_TRUE(opened.writer) << opened.error;
        recording::Recorder second(platform, *opened.writer, {}, "test");
        whileAsleep = [&] { EXPECT_TRUE(second.look()); };
        const std::int64_t began = machine.now;
        ASSERT_EQ(run({"play", path("first" + format)}).code, 0);
        whileAsleep = nullptr;
        EXPECT_TRUE(second.finish() && opened.writer->close());
        Content again = contentOf("second" + format);

        std::vector<Value> expected = first.values;
        for (Value& value : expected) value.time += began - first.sessions[0].started;
        const auto place = [](const Value& value) { return std::tuple(value.time, value.boat, value.channel); };
        std::ranges::sort(expected, {}, place);
        std::ranges::sort(again.values, {}, place);
        EXPECT_EQ(again.values, expected) << format;
    }
}

} // namespace
} // namespace tallowmere::test

#include "tests/tools/record/recording_fixture.hpp"
#include "tools/record/record.hpp"
#include "tools/record/recording_writer.hpp"

#include <gmock/gmock.h>
#include <sqlite3.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace tallowmere::test {
namespace {

using recording::Value;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class RecordCommand : public RecordingTest {
  protected:
    /// Records one look into a file and gives what is in it.
    Content recordOnce(const std::string& file, std::vector<std::string> more = {}) {
        std::vector<std::string> arguments{"record", "-o", path(file), "--seconds", "0.001"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const CommandRun result = run(arguments);
        EXPECT_EQ(result.code, 0) << result.err;
        return contentOf(file);
    }
};

const std::string kFormats[] = {"a.sqlite", "a.csv"};

TEST_F(RecordCommand, WritesTheLoggedChannelsThatHaveAValue) {
    const std::int64_t written = machine.now;
    store(ZAN_BSP, 6.4);
    store(ZAN_FORESTAY, 1000.0);
    writeOnce(area().settings[ZAN_FORESTAY].log, 0);
    for (const std::string& file : kFormats) {
        const Content content = recordOnce(file);
        ASSERT_THAT(content.values, SizeIs(1)) << file;
        EXPECT_EQ(content.values[0], (Value{written, ZAN_BSP, 0, StorageKind::Double, Record::ofNumber(6.4).payload}))
            << file;
        EXPECT_THAT(content.sessions, SizeIs(1));
        EXPECT_EQ(content.sessions[0].program, "tallowmere " TALLOWMERE_VERSION);
    }
}

TEST_F(RecordCommand, AReplayIsASessionOfItsOwnAndNamedAsSuch) {
    store(ZAN_BSP, 6.4);
    for (const std::string& file : kFormats) {
        writeText(area().boats[0].name, u"Falcon");
        int sleeps = 0;
        whileAsleep = [&] {
            if (++sleeps == 5) writeText(area().boats[0].name, u"[REPLAY] Falcon");
            if (sleeps == 10) writeText(area().boats[0].name, u"Falcon");
        };
        const CommandRun result = run({"record", "-o", path(file), "--seconds", "0.4"});
        whileAsleep = nullptr;
        EXPECT_THAT(result.err, HasSubstr("a recording is being played (REPLAY)"));
        const Content content = contentOf(file);
        ASSERT_THAT(content.sessions, SizeIs(3)) << file;
        EXPECT_EQ(content.sessions[0].program, "tallowmere " TALLOWMERE_VERSION);
        EXPECT_EQ(content.sessions[1].program, "tallowmere " TALLOWMERE_VERSION " [REPLAY]");
        EXPECT_EQ(content.sessions[2].program, "tallowmere " TALLOWMERE_VERSION);
        bringFile(file);
        EXPECT_THAT(run({"plot", path(file), "BSP"}).out, HasSubstr("UTC, REPLAY<"));
    }
}

TEST_F(RecordCommand, WritesNamedChannelsWhateverTheirLogFlag) {
    store(ZAN_BSP, 6.4);
    store(ZAN_FORESTAY, 1000.0);
    writeOnce(area().settings[ZAN_FORESTAY].log, 0);
    const Content content = recordOnce("a.sqlite", {"Forestay"});
    ASSERT_THAT(content.values, SizeIs(1));
    EXPECT_EQ(content.values[0].channel, ZAN_FORESTAY);
}

TEST_F(RecordCommand, KeepsEveryKindBitForBitInBothFormats) {
    const double smallest = std::numeric_limits<double>::denorm_min();
    put(ZAN_BSP, Record::ofNumber(-0.0), 0, machine.now);
    put(ZAN_AWA, Record::ofNumber(7.0), 0, machine.now - 1);
    put(ZAN_AWS, Record::ofNumber(smallest), 0, machine.now);
    put(ZAN_TWS, Record::ofNumber(std::numeric_limits<double>::infinity()), 0, machine.now);
    put(ZAN_TWD, Record::ofNumber(0.1 + 0.2), 0, machine.now);
    put(ZAN_SAIL, Record::ofInteger(-5), 0, machine.now);
    put(ZAN_GPS_TIME, Record::ofTicks(machine.now + 7), 0, machine.now);
    put(ZAN_HEEL, Record{0, 200}, 0, machine.now);
    const std::vector<std::string> names{"BSP", "AWA", "AWS", "TWS", "TWD", "Sail", std::to_string(ZAN_GPS_TIME),
                                         "Heel"};
    const std::int64_t before = machine.now;
    const Content rows = recordOnce("a.csv", names);
    machine.now = before;
    const Content base = recordOnce("a.sqlite", names);
    EXPECT_EQ(rows.values, base.values);
    ASSERT_THAT(base.values, SizeIs(8));
    for (const Value& value : base.values) {
        const auto slot = valueSlotOf(area(), value.channel, 0);
        EXPECT_EQ(value.time, *slot.stamp) << value.channel;
        EXPECT_EQ(value.record(StorageKind::Double), loadRecord(*slot.current)) << value.channel;
    }
}

TEST_F(RecordCommand, ANotANumberStaysOne) {
    put(ZAN_BSP, Record::ofNumber(std::numeric_limits<double>::quiet_NaN()), 0, machine.now);
    for (const std::string& file : kFormats) {
        const Content content = recordOnce(file);
        ASSERT_THAT(content.values, SizeIs(1)) << file;
        EXPECT_TRUE(std::isnan(content.values[0].record(StorageKind::Double).number())) << file;
    }
}

TEST_F(RecordCommand, AValueThatIsTakenAwayIsARowWithoutValue) {
    store(ZAN_BSP, 6.4);
    for (const std::string& file : kFormats) {
        store(ZAN_BSP, 6.4);
        int sleeps = 0;
        whileAsleep = [&] {
            if (++sleeps == 1) store(ZAN_BSP, NO_VALUE);
        };
        const CommandRun result = run({"record", "-o", path(file), "--seconds", "0.1"});
        EXPECT_EQ(result.code, 0) << result.err;
        const Content content = contentOf(file);
        ASSERT_THAT(content.values, SizeIs(2)) << file;
        EXPECT_TRUE(content.values[0].payload);
        EXPECT_FALSE(content.values[1].payload);
    }
}

TEST_F(RecordCommand, ARepeatedValueIsARowOfItsOwnByItsStamp) {
    int sleeps = 0;
    store(ZAN_BSP, 6.4);
    whileAsleep = [&] {
        if (++sleeps % 5 == 0) store(ZAN_BSP, 6.4);
    };
    const CommandRun result = run({"record", "-o", path("a.sqlite"), "--seconds", "0.2"});
    const Content content = contentOf("a.sqlite");
    ASSERT_THAT(content.values, SizeIs(2)) << result.err;
    EXPECT_EQ(content.values[1].time - content.values[0].time, kSecond / 10);
}

TEST_F(RecordCommand, RateTellsHowOftenIsLooked) {
    store(ZAN_BSP, 1.0);
    whileAsleep = [&] { store(ZAN_BSP, 6.4); }; // every 50 ms at most
    run({"record", "-o", path("a.sqlite"), "--seconds", "4", "--rate", "1"});
    EXPECT_THAT(contentOf("a.sqlite").values, SizeIs(4));
}

TEST_F(RecordCommand, OnATerminalALineTellsEachSecondWhatIsRecorded) {
    store(ZAN_BSP, 1.0);
    whileAsleep = [&] { store(ZAN_BSP, 6.4); };
    std::ostringstream out;
    std::ostringstream err;
    const tools::CommandContext context{platform, out, err, stop, terminal, [this] { return columns; }};
    recording::RecordOptions options;
    options.file = path("a.sqlite");
    options.rate = 10.0;
    options.seconds = 2.5;
    options.progress = true;
    EXPECT_EQ(recording::runRecord(context, options), 0);
    EXPECT_THAT(err.str(), HasSubstr("11 values/s, 11 rows, 1 boat, 0."));
    EXPECT_THAT(err.str(), HasSubstr(" MB, newest 0.0 s"));
    EXPECT_THAT(err.str(), HasSubstr("10 values/s, 21 rows, 1 boat, 0."));
    options.progress = false;
    err.str("");
    EXPECT_EQ(recording::runRecord(context, options), 0);
    EXPECT_EQ(err.str().find("values/s"), std::string::npos);
}

TEST_F(RecordCommand, AllBoatsInUseOrThoseAskedFor) {
    for (const BoatIndex boat : std::initializer_list<BoatIndex>{0, 1, 2, 99}) store(ZAN_SOG, 5.0 + boat, boat);
    const Content all = recordOnce("a.sqlite", {"SOG"});
    std::vector<int> boats;
    for (const Value& value : all.values) boats.push_back(value.boat);
    EXPECT_THAT(boats, ::testing::ElementsAre(0, 1, 2, 99));
    const Content some = recordOnce("b.csv", {"SOG", "--boat", "2", "--boat", "99"});
    ASSERT_THAT(some.values, SizeIs(2));
    EXPECT_EQ(some.values[0].boat, 2);
    EXPECT_EQ(some.values[1].boat, 99);
}

TEST_F(RecordCommand, ZerosInBoatOnesNewBlockAreNoValues) {
    store(ZAN_SOG, 5.0, 1);
    EXPECT_THAT(recordOnce("a.sqlite").values, SizeIs(1));
}

TEST_F(RecordCommand, WhatIsASecondOldStandsInTheFileWhateverHappens) {
    store(ZAN_BSP, 6.4);
    for (const std::string& file : kFormats) {
        const std::int64_t began = machine.now;
        std::int64_t looks = 0;
        whileAsleep = [&] {
            store(ZAN_BSP, 6.4);
            if (machine.now - began < kSecond) return;
            // Another process reads what a killed recorder would leave: nothing that waits in this one.
            const Content content = contentOf(file);
            ASSERT_FALSE(content.values.empty()) << file;
            EXPECT_GE(content.values.back().time, machine.now - kSecond) << file;
            ++looks;
        };
        EXPECT_EQ(run({"record", "-o", path(file), "--seconds", "4"}).code, 0);
        EXPECT_GT(looks, 10);
    }
}

TEST_F(RecordCommand, WaitsForASectionAndMakesNone) {
    int sleeps = 0;
    std::optional<CCore> late;
    whileAsleep = [&] {
        if (++sleeps == 1) {
            EXPECT_FALSE(sectionExists());
        }
        if (sleeps == 10) {
            late.emplace(platform, false);
            late->values().storeDouble(ZAN_BSP, 6.4, 0);
        }
    };
    const CommandRun result = run({"record", "-o", path("a.sqlite"), "--seconds", "2"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.err, HasSubstr("waiting for shared data"));
    EXPECT_THAT(contentOf("a.sqlite").values, SizeIs(1));
}

TEST_F(RecordCommand, GoesOnInTheNextSectionAndMarksTheGap) {
    std::optional<CCore> core;
    core.emplace(platform, false);
    core->values().storeDouble(ZAN_BSP, 6.4, 0);
    int sleeps = 0;
    whileAsleep = [&] {
        ++sleeps;
        if (sleeps == 20) core.reset();
        if (sleeps == 60) {
            core.emplace(platform, false);
            core->values().storeDouble(ZAN_BSP, 7.0, 0);
        }
    };
    EXPECT_EQ(run({"record", "-o", path("a.sqlite"), "--seconds", "3"}).code, 0);
    const Content content = contentOf("a.sqlite");
    EXPECT_THAT(content.sessions, SizeIs(2));
    ASSERT_THAT(content.values, SizeIs(3));
    EXPECT_FALSE(content.values[1].payload) << "gone with its section";
    EXPECT_EQ(content.values[2].payload, Record::ofNumber(7.0).payload);
}

TEST_F(RecordCommand, NothingIsWrittenIntoTheSection) {
    store(ZAN_BSP, 6.4);
    const auto before = std::make_unique<SharedArea>(area());
    recordOnce("a.sqlite");
    EXPECT_EQ(std::memcmp(before.get(), &area(), sizeof area()), 0);
}

TEST_F(RecordCommand, AnyBytesInTheSectionAreRecordedReadablyAndPlayed) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        fillWithNoise(area(), seed);
        const std::string file = "noise" + std::to_string(seed) + (seed % 2 == 0 ? ".csv" : ".sqlite");
        const Content content = recordOnce(file);
        EXPECT_THAT(content.damages, IsEmpty()) << seed;
        EXPECT_THAT(content.error, IsEmpty()) << seed;
        EXPECT_FALSE(content.values.empty()) << seed;
    }
}

TEST_F(RecordCommand, AnotherSessionIsAddedToADatabase) {
    store(ZAN_BSP, 6.4);
    recordOnce("a.sqlite");
    const Content content = recordOnce("a.sqlite");
    EXPECT_THAT(content.sessions, SizeIs(2));
    EXPECT_THAT(content.values, SizeIs(2));
}

TEST_F(RecordCommand, AFileOfAnotherKindIsLeftAlone) {
    store(ZAN_BSP, 6.4);
    writeFile("a.sqlite", "nothing of ours, but quite long enough to be taken for a page of something");
    EXPECT_EQ(run({"record", "-o", path("a.sqlite"), "--seconds", "0.1"}).code, 3);
    writeFile("a.csv", "time,boat\n");
    const CommandRun result = run({"record", "-o", path("a.csv"), "--seconds", "0.1"});
    EXPECT_EQ(result.code, 3);
    EXPECT_THAT(result.err, HasSubstr("it is there already"));
    sqlite3* other = nullptr;
    sqlite3_open(path("other.sqlite").c_str(), &other);
    sqlite3_exec(other, "CREATE TABLE mine (x)", nullptr, nullptr, nullptr);
    sqlite3_close(other);
    EXPECT_THAT(run({"record", "-o", path("other.sqlite"), "--seconds", "0.1"}).err, HasSubstr("of another kind"));
}

TEST_F(RecordCommand, SaysWhyAFileCanNotBeRecordedIntoAndWhatToDo) {
    store(ZAN_BSP, 6.4);
    const auto errorOf = [&](const std::string& name) {
        const CommandRun result = run({"record", "-o", path(name), "--seconds", "0.1"});
        EXPECT_EQ(result.code, 3) << name;
        return result.err;
    };
    {
        const recording::OpenedWriter other = recording::openSqliteWriter(path("a.sqlite"));
        ASSERT_TRUE(other.writer) << other.error;
        EXPECT_THAT(errorOf("a.sqlite"), HasSubstr("another program is recording into it"));
    }
    EXPECT_EQ(run({"record", "-o", path("a.sqlite"), "--seconds", "0.1"}).code, 0);
    std::filesystem::create_directory(path("folder.csv"));
    EXPECT_THAT(errorOf("folder.csv"), HasSubstr("it is no ordinary file; give another name"));
    for (const char* const name : {"none/a.csv", "none/a.sqlite"})
        EXPECT_THAT(errorOf(name), HasSubstr("does its folder exist")) << name;
}

TEST_F(RecordCommand, TheClockAndChannelsThatStandForOthersAreRefused) {
    EXPECT_EQ(run({"record", "0", "-o", path("a.sqlite")}).code, 1);
    EXPECT_EQ(run({"record", "117", "-o", path("a.sqlite")}).code, 1);
    EXPECT_EQ(run({"record", "nosuch", "-o", path("a.sqlite")}).code, 1);
    EXPECT_FALSE(std::filesystem::exists(path("a.sqlite")));
}

TEST_F(RecordCommand, ADatabaseIsReadableBySql) {
    store(ZAN_BSP, 6.4);
    store(ZAN_SOG, 5.0, 3);
    recordOnce("a.sqlite");
    sqlite3* base = nullptr;
    ASSERT_EQ(sqlite3_open(path("a.sqlite").c_str(), &base), SQLITE_OK);
    const auto ask = [&](const char* sql) {
        sqlite3_stmt* statement = nullptr;
        EXPECT_EQ(sqlite3_prepare_v2(base, sql, -1, &statement, nullptr), SQLITE_OK) << sqlite3_errmsg(base);
        std::string text;
        while (sqlite3_step(statement) == SQLITE_ROW)
            for (int column = 0; column < sqlite3_column_count(statement); ++column)
                text += std::string(reinterpret_cast<const char*>(sqlite3_column_text(statement, column))) + "|";
        sqlite3_finalize(statement);
        return text;
    };
    EXPECT_EQ(ask("SELECT channel, boat, value, unit FROM reading ORDER BY id"), "BSP|0|6.4|kt|SOG|3|5.0|kt|");
    EXPECT_EQ(ask("SELECT utc FROM reading LIMIT 1"), "2025-11-22T00:00:00.000Z|");
    EXPECT_EQ(ask("SELECT boats, program, ended >= started FROM recording"), "2|tallowmere " TALLOWMERE_VERSION "|1|");
    EXPECT_EQ(ask("SELECT number, name FROM boat"), "0||3|Boat 3|");
    EXPECT_EQ(ask("PRAGMA integrity_check"), "ok|");
    sqlite3_close(base);
}

} // namespace
} // namespace tallowmere::test

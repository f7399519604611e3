// Databases that somebody else has made or damaged.
#include "tests/tools/record/recording_fixture.hpp"

#include <gmock/gmock.h>
#include <sqlite3.h>

namespace tallowmere::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

class RecordingReader : public RecordingTest {
  protected:
    RecordingReader() {
        store(ZAN_BSP, 6.4);
        EXPECT_EQ(run({"record", "-o", path("a.sqlite"), "--seconds", "0.1"}).code, 0);
    }
    /// What the reader gives out, in its order: sessions, values, ends, damages by their first letter.
    std::vector<char> kindsIn(const std::string& name) {
        bringFile(name);
        std::vector<char> kinds;
        const auto opened = recording::openRecording(platform, path(name), stop);
        while (const auto item = opened.reader->next()) kinds.push_back("sved"[item->index()]);
        return kinds;
    }
    void alter(const std::string& sql) {
        sqlite3* base = nullptr;
        ASSERT_EQ(sqlite3_open(path("a.sqlite").c_str(), &base), SQLITE_OK);
        char* error = nullptr;
        EXPECT_EQ(sqlite3_exec(base, sql.c_str(), nullptr, nullptr, &error), SQLITE_OK) << error;
        sqlite3_close(base);
    }
};

TEST_F(RecordingReader, RowsThatMakeNoSenseAreDamageAndTheOthersCount) {
    const std::string row = "INSERT INTO value (recording, time, boat, channel, kind, value) VALUES ";
    for (const char* values :
         {"(1, 'now', 0, 1, 1, 5.0)", "(1, 0, 0, 1, 1, 5.0)", "(1, 9223372036854775807, 0, 1, 1, 5.0)",
          "(1, 134082432000000000, -1, 1, 1, 5.0)", "(1, 134082432000000000, 100, 1, 1, 5.0)",
          "(1, 134082432000000000, 0, 414, 1, 5.0)", "(1, 134082432000000000, 0, 65537, 1, 5.0)",
          "(1, 134082432000000000, 0, 1, 4, 5.0)", "(1, 134082432000000000, 0, 1, 1, 'six')",
          "(1, 134082432000000000, 0, 1, 1, x'00')", "(1, 134082432000000000, 0, 269, 2, 2147483648)",
          "(1, 134082432000000000, 0, 269, 2, 1.5)", "(1, 134082432000000000, 0, 1, 0, 256)",
          "('one', 134082432000000000, 0, 1, 1, 5.0)"})
        alter(row + values);
    alter(row + "(1, 134082432000000000, 0, 1, 1, 7.5), (77, 134082432000000000, 0, 1, 1, 8.5)");
    const Content content = contentOf("a.sqlite");
    EXPECT_THAT(content.error, IsEmpty());
    EXPECT_THAT(content.damages, SizeIs(14));
    EXPECT_EQ(content.damages[0].where, "row 2 of the values");
    EXPECT_THAT(content.values, SizeIs(3));
    EXPECT_THAT(content.sessions, SizeIs(2)) << "one that nobody has begun";
}

TEST_F(RecordingReader, TheEndOfASessionComesAfterItsLastValueInBothFormats) {
    EXPECT_EQ(run({"record", "-o", path("a.sqlite"), "--seconds", "0.1"}).code, 0);
    EXPECT_EQ(run({"record", "-o", path("a.csv"), "--seconds", "0.1"}).code, 0);
    const std::vector<char> two{'s', 'v', 'e', 's', 'v', 'e'};
    EXPECT_EQ(kindsIn("a.sqlite"), two);
    EXPECT_EQ(kindsIn("a.csv"), std::vector<char>(two.begin(), two.begin() + 3));
    EXPECT_EQ(contentOf("a.csv").ends.at(0).time, machine.now);
}

TEST_F(RecordingReader, ASessionThatWasCutShortHasNoEnd) {
    for (const char* const ended : {"NULL", "0", "'soon'", "9223372036854775807"}) {
        alter(std::string("UPDATE recording SET ended = ") + ended);
        EXPECT_EQ(kindsIn("a.sqlite"), (std::vector<char>{'s', 'v'})) << ended;
    }
    writeFile("a.csv", "time,boat,channel,name,unit,class,kind,value\n2025-11-21T12:00:00Z,,,test,,,start,\n"
                       "later,,,,,,end,\n");
    const Content content = contentOf("a.csv");
    EXPECT_THAT(content.ends, IsEmpty());
    EXPECT_THAT(content.damages, SizeIs(1));
}

TEST_F(RecordingReader, OtherDatabasesAreNoRecordings) {
    alter("DROP VIEW reading; ALTER TABLE value RENAME TO old; CREATE VIEW value AS WITH RECURSIVE n(i) AS "
          "(SELECT 1 UNION ALL SELECT i FROM n) SELECT i AS id, i AS recording, i AS time, i AS boat, i AS channel, "
          "i AS kind, i AS value FROM n WHERE i > 1");
    EXPECT_THAT(contentOf("a.sqlite").error, HasSubstr("no recording"));
}

TEST_F(RecordingReader, ANewerFormatIsRefused) {
    alter("PRAGMA user_version = 2");
    EXPECT_THAT(contentOf("a.sqlite").error, HasSubstr("another version"));
    EXPECT_EQ(run({"record", "-o", path("a.sqlite"), "--seconds", "0.1"}).code, 3);
}

TEST_F(RecordingReader, ADatabaseCutShortEndsWithAnErrorAndNothingWorse) {
    std::string rows = "INSERT INTO value (recording, time, boat, channel, kind, value) VALUES ";
    for (int i = 0; i < 2000; ++i) rows += std::string(i == 0 ? "" : ",") + "(1, 134082432000000000, 0, 1, 1, 5.0)";
    alter(rows);
    std::ifstream file(path("a.sqlite"), std::ios::binary);
    const std::string whole{std::istreambuf_iterator<char>(file), {}};
    for (const std::size_t length : {std::size_t{100}, whole.size() / 4, whole.size() / 2, whole.size() - 4096}) {
        writeFile("a.sqlite", whole.substr(0, length));
        EXPECT_THAT(contentOf("a.sqlite").error, Not(IsEmpty())) << length;
    }
}

TEST_F(RecordingReader, DamagedPagesNeverDoMoreThanFail) {
    std::ifstream file(path("a.sqlite"), std::ios::binary);
    const std::string whole{std::istreambuf_iterator<char>(file), {}};
    for (unsigned seed = 0; seed < 200; ++seed) {
        std::string bytes = whole;
        for (unsigned i = 0; i < 20; ++i)
            bytes[(seed * 7919 + i * 104'729) % bytes.size()] = static_cast<char>(seed + i);
        writeFile("a.sqlite", bytes);
        static_cast<void>(contentOf("a.sqlite")); // must return
        static_cast<void>(run({"play", path("a.sqlite"), "--speed", "0"}));
    }
}

} // namespace
} // namespace tallowmere::test

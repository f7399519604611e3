// The real program, killed while it records. This process holds the section.
#include "core/ccore.hpp"
#include "tests/support/temporary_folder.hpp"
#include "tests/tools/record/posix/child.hpp"
#include "tests/tools/record/recording_fixture.hpp"
#include "tools/record/recording_reader.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace tallowmere::test {
namespace {

using ::testing::IsEmpty;

class KilledRecorder : public ::testing::TestWithParam<const char*> {
  protected:
    struct Content {
        std::vector<recording::Value> values;
        std::size_t sessions = 0;
        std::size_t damages = 0;
        std::string error;
    };
    [[nodiscard]] Content content() const {
        Content content;
        const auto opened = recording::openRecording(platform::hostPlatform(), file_.string(), never_);
        content.error = opened.error;
        while (opened.reader) {
            const auto item = opened.reader->next();
            if (!item) break;
            if (const auto* const value = std::get_if<recording::Value>(&*item)) content.values.push_back(*value);
            content.sessions += std::holds_alternative<recording::Session>(*item) ? 1U : 0U;
            content.damages += std::holds_alternative<recording::Damage>(*item) ? 1U : 0U;
        }
        if (opened.reader) content.error = opened.reader->error();
        return content;
    }
    /// Writes a value every few milliseconds until a reader finds so many rows. What it found last.
    Content writeUntil(std::size_t rows) {
        Content found;
        for (int step = 0; step < 3000 && found.values.size() < rows; ++step) {
            core_.values().storeDouble(ZAN_BSP, 0.001 * ++written_, 0);
            platform::hostPlatform().sleepMilliseconds(20);
            if (step % 10 == 0) found = content();
        }
        return found;
    }

    const std::atomic<bool> never_{false};
    const TemporaryFolder folder_;
    const std::filesystem::path file_ = folder_.path() / GetParam();
    CCore core_{false};
    int written_ = 0;
};

TEST_P(KilledRecorder, LeavesAWholeFileWithAllThatWasCommitted) {
    ASSERT_NE(core_.area(), nullptr);
    Child recorder({"record", "BSP", "-o", file_.string()});
    const Content before = writeUntil(50);
    ASSERT_GE(before.values.size(), 50U);
    EXPECT_EQ(recorder.end(SIGKILL), 128 + SIGKILL);
    const Content after = content();
    EXPECT_THAT(after.error, IsEmpty());
    EXPECT_EQ(after.damages, 0U);
    ASSERT_GE(after.values.size(), before.values.size());
    EXPECT_TRUE(std::equal(before.values.begin(), before.values.end(), after.values.begin()));
}

TEST_P(KilledRecorder, EndsCleanlyWhenItIsAsked) {
    Child recorder({"record", "BSP", "-o", file_.string()});
    ASSERT_GE(writeUntil(10).values.size(), 10U);
    EXPECT_EQ(recorder.end(SIGINT), 0);
    EXPECT_THAT(content().error, IsEmpty());
    std::size_t files = 0;
    for ([[maybe_unused]] const auto& each : std::filesystem::directory_iterator(folder_.path())) ++files;
    EXPECT_EQ(files, 1U) << "nothing lies beside it";
}

TEST_P(KilledRecorder, AKilledDatabaseIsRecordedOn) {
    if (!std::string(GetParam()).ends_with(".sqlite")) GTEST_SKIP() << "a CSV file is never added to";
    Child(std::vector<std::string>{"record", "BSP", "-o", file_.string(), "--seconds", "0"}).end(SIGKILL);
    {
        Child recorder({"record", "BSP", "-o", file_.string()});
        ASSERT_GE(writeUntil(10).values.size(), 10U);
        recorder.end(SIGKILL);
    }
    const std::size_t before = content().values.size();
    Child recorder({"record", "BSP", "-o", file_.string()});
    ASSERT_GE(writeUntil(before + 10).values.size(), before + 10);
    EXPECT_EQ(recorder.end(SIGTERM), 0);
    EXPECT_EQ(content().sessions, 2U);
}

INSTANTIATE_TEST_SUITE_P(, KilledRecorder, ::testing::Values("a.sqlite", "a.csv"));

/// A process whose clock goes on while the recorder sleeps and not otherwise, so that nothing hangs on how fast this
/// machine is. The file and the kill are real.
class RecorderWithAClockOfItsOwn : public RecordingTest {
  protected:
    /// Records one numbered value a look until the process kills itself after so long. When the last one was written.
    std::int64_t recordUntilKilled(const std::string& file, std::int64_t after) {
        const std::int64_t end = machine.now + after;
        const pid_t process = ::fork();
        if (process == 0) {
            int number = 0;
            store(ZAN_BSP, ++number);
            whileAsleep = [&] {
                store(ZAN_BSP, ++number);
                if (machine.now >= end) ::kill(::getpid(), SIGKILL);
            };
            run({"record", "BSP", "-o", path(file)});
            ::_exit(1);
        }
        int status = 0;
        EXPECT_EQ(::waitpid(process, &status, 0), process);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
        return end;
    }
};

TEST_F(RecorderWithAClockOfItsOwn, LosesASecondAtMostWheneverItIsKilled) {
    constexpr std::int64_t look = kSecond / 50;
    for (const std::string& format : {std::string(".sqlite"), std::string(".csv")})
        for (std::int64_t after = kSecond; after < 2 * kSecond; after += 3 * look) {
            const std::string file = std::to_string(after) + format;
            const std::int64_t last = recordUntilKilled(file, after);
            const Content content = contentOf(file);
            ASSERT_FALSE(content.values.empty()) << file;
            EXPECT_GE(content.values.back().time, last - kSecond) << file;
            // Nothing is missing before it.
            double number = 0;
            for (const recording::Value& value : content.values)
                EXPECT_EQ(value.record(StorageKind::Double).number(), ++number) << file;
        }
}

} // namespace
} // namespace tallowmere::test

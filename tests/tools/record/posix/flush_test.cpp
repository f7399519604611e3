// What a recorder has written reaches the disk, not only the system, each second at least: a plug that is pulled leaves
// what a killed process would not show.
#include "tests/tools/record/recording_fixture.hpp"

#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace {
std::vector<std::int64_t>* flushes = nullptr; // when
std::int64_t (*moment)() = nullptr;

int flush(long call, int file) {
    if (flushes != nullptr) flushes->push_back(moment());
    return static_cast<int>(::syscall(call, file));
}
} // namespace

// In place of the C library's, for SQLite's shared library too.
extern "C" [[gnu::visibility("default")]] int fsync(int file) {
    return flush(SYS_fsync, file);
}
extern "C" [[gnu::visibility("default")]] int fdatasync(int file) {
    return flush(SYS_fdatasync, file);
}

namespace tallowmere::test {
namespace {

std::int64_t* clockOfTheTest = nullptr;

class RecordFlush : public RecordingTest {
  protected:
    RecordFlush() {
        clockOfTheTest = &machine.now;
        moment = [] { return *clockOfTheTest; };
    }
    ~RecordFlush() override { flushes = nullptr; }
};

TEST_F(RecordFlush, GoesToTheDiskEachSecondAtLeast) {
    store(ZAN_BSP, 6.4);
    whileAsleep = [&] { store(ZAN_BSP, 6.4); };
    for (const char* file : {"a.sqlite", "a.csv"}) {
        std::vector<std::int64_t> times{machine.now};
        flushes = &times;
        EXPECT_EQ(run({"record", "-o", path(file), "--seconds", "4"}).code, 0);
        flushes = nullptr;
        times.push_back(machine.now);
        for (std::size_t i = 1; i < times.size(); ++i) EXPECT_LE(times[i] - times[i - 1], kSecond) << file << " " << i;
        EXPECT_GE(times.size(), 5U) << file;
    }
}

} // namespace
} // namespace tallowmere::test

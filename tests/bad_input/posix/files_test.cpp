// Files that may not be read, files that change while they are read, the settings file and the log.
#include "log/system_log.hpp"
#include "platform/posix/descriptor.hpp"
#include "tests/bad_input/started_files.hpp"
#include "tests/contract/posix_children.hpp"
#include "tests/contract/posix_surroundings.hpp"
#include "tests/support/case_count.hpp"

#include <atomic>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace tallowmere::test {
namespace {

namespace fs = std::filesystem;

constexpr uid_t kNobody = 65534;

class PosixBadFiles : public FilesTest {
  protected:
    /// The machine's own folder, which holds everything.
    [[nodiscard]] fs::path top() const { return machine.folder().parent_path().parent_path(); }
    [[nodiscard]] fs::path settingsFile() const { return top() / "config" / "tallowmere" / "registry.reg"; }
    void giveAllTo(uid_t user) const {
        ASSERT_EQ(::lchown(top().c_str(), user, user), 0);
        for (const fs::path& each : fs::recursive_directory_iterator(top()))
            ASSERT_EQ(::lchown(each.c_str(), user, user), 0);
    }
    static int bitsOf(const Taken& taken) {
        int bits = taken.foreign ? 64 : 0;
        for (std::size_t i = 0; i < kFiles; ++i) bits |= taken.file[i] ? 1 << i : 0;
        return bits;
    }
    int bitsAsNobody() {
        return runAs(kNobody, [] { return bitsOf(startHost()); });
    }
};

TEST_F(PosixBadFiles, OnesThatMayNotBeReadLeaveTheirDefault) {
    if (::geteuid() != 0) GTEST_SKIP() << "takes another user, so root";
    CaseCount cases("files");
    giveAllTo(kNobody);
    ASSERT_EQ(bitsAsNobody(), bitsOf(allBut(kFiles)));
    for (std::size_t i = 0; i < kFiles; ++i) {
        ++cases;
        ASSERT_EQ(::chmod(path(kGoodFiles[i].path).c_str(), 0), 0);
        EXPECT_EQ(bitsAsNobody(), bitsOf(allBut(i))) << kGoodFiles[i].path;
        ASSERT_EQ(::chmod(path(kGoodFiles[i].path).c_str(), 0600), 0);
    }
    ++cases;
    ASSERT_EQ(::chmod(settingsFile().c_str(), 0), 0);
    EXPECT_EQ(bitsAsNobody(), 0); // neither folder nor calibration is named
    ASSERT_EQ(::chmod(settingsFile().c_str(), 0600), 0);
    for (const char* folder : {"config", "calibration"}) {
        ++cases;
        ASSERT_EQ(::chmod((machine.folder() / folder).c_str(), 0), 0);
        const int without = folder[1] == 'o' ? 8 | 16 : 1 | 2 | 4;
        EXPECT_EQ(bitsAsNobody(), without) << folder;
        ASSERT_EQ(::chmod((machine.folder() / folder).c_str(), 0700), 0);
    }
    EXPECT_EQ(bitsAsNobody(), bitsOf(allBut(kFiles)));
}

TEST_F(PosixBadFiles, TheSettingsFileMissingAFolderEmptyHugeOrNoiseGivesDefaults) {
    CaseCount cases("files");
    const std::string good = readBytes(settingsFile());
    const auto expectNone = [&](const char* what) {
        ++cases;
        EXPECT_EQ(startHost(), Taken{}) << what;
        fs::remove_all(settingsFile());
    };
    fs::remove(settingsFile());
    expectNone("missing");
    fs::create_directory(settingsFile());
    expectNone("a folder");
    writeBytes(settingsFile(), "");
    expectNone("empty");
    for (const std::uintmax_t size : {(16U << 20) + 1U, 64U << 20}) {
        writeBytes(settingsFile(), good);
        fs::resize_file(settingsFile(), size);
        expectNone("huge");
    }
    for (const char* noise : {"\xFF\xFE\x41", "\xFE\xFF", "\xEF\xBB\xBF", "[", "\"=", "[HKEY_CURRENT_USER\\Software"}) {
        writeBytes(settingsFile(), noise);
        expectNone(noise);
    }
    writeBytes(settingsFile(), good);
    fs::resize_file(settingsFile(), 16U << 20); // as large as it may be: zeros behind the last line
    ++cases;
    EXPECT_EQ(startHost(), allBut(kFiles));
}

/// Somebody cuts, replaces and lengthens the settings, which the library writes to itself: each value is the user's or
/// the default, and once the file stands still it is read whole.
TEST_F(PosixBadFiles, SettingsThatChangeWhileTheyAreReadDoNoHarm) {
    CaseCount cases("starts");
    CaseCount users("of them: with the user's value");
    const double usersLength = 20.5;
    machine.set(kCoreKey, u"Sys_v0", 3, std::string(reinterpret_cast<const char*>(&usersLength), 8));
    const std::string good = readBytes(settingsFile());
    std::string large;
    for (int i = 0; i < 200; ++i) large += good;
    std::atomic<bool> over = false;
    std::thread changer([&] {
        const fs::path other = settingsFile().string() + ".other";
        while (!over) {
            std::error_code ignored;
            writeBytes(settingsFile(), large);
            fs::resize_file(settingsFile(), large.size() / 2, ignored);
            writeBytes(other, large);
            fs::rename(other, settingsFile(), ignored);
            for (int k = 0; k < 3; ++k) std::ofstream(settingsFile(), std::ios::binary | std::ios::app) << large;
            fs::remove(settingsFile(), ignored);
        }
    });
    for (int start = 0; start < 200; ++start) {
        ++cases;
        const CCore core(true);
        ASSERT_NE(core.area(), nullptr);
        const double length = core.system().variable(0);
        EXPECT_TRUE(length == usersLength || length == 15.85) << length;
        if (length == usersLength) ++users;
    }
    over = true;
    changer.join();
    writeBytes(settingsFile(), good);
    EXPECT_EQ(startHost(), allBut(kFiles));
}

/// Locks are for those who ask for them: nothing that the library reads or appends to is held up by one.
TEST_F(PosixBadFiles, OnesThatAreLockedAreReadAllTheSame) {
    CaseCount cases("files");
    const auto lock = [](const fs::path& file) {
        platform::posix::Descriptor held(::open(file.c_str(), O_RDWR | O_CLOEXEC));
        struct flock whole {};
        whole.l_type = F_WRLCK;
        whole.l_whence = SEEK_SET;
        EXPECT_EQ(::flock(held.get(), LOCK_EX | LOCK_NB), 0);
        EXPECT_EQ(::fcntl(held.get(), F_OFD_SETLK, &whole), 0);
        return held;
    };
    for (const GoodFile& file : kGoodFiles) {
        ++cases;
        const auto held = lock(path(file.path));
        EXPECT_EQ(startHost(), allBut(kFiles)) << file.path;
    }
    ++cases;
    const auto settings = lock(settingsFile());
    EXPECT_EQ(startHost(), allBut(kFiles));
    ++cases;
    const fs::path log = machine.folder() / "a.log";
    writeBytes(log, "");
    const auto held = lock(log);
    EXPECT_TRUE(platform::hostPlatform().appendLine(log.u16string(), "a line"));
    EXPECT_EQ(readBytes(log), "a line\n");
}

TEST_F(PosixBadFiles, ALogThatCannotBeWrittenLosesTheLineOnly) {
    CaseCount cases("logs");
    CCore core(false);
    ASSERT_NE(core.area(), nullptr);
    core.system().setFlag(1, 0); // the file's date is UTC
    const fs::path folder = machine.folder() / "log_system";
    const auto write = [&] {
        ++cases;
        const int nothing = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
        const int before = ::dup(STDERR_FILENO);
        ::dup2(nothing, STDERR_FILENO);
        WriteSystemLog(core.context(), u"A message");
        ::dup2(before, STDERR_FILENO);
        ::close(before);
        ::close(nothing);
    };
    write();
    ASSERT_TRUE(fs::is_directory(folder));
    const fs::path log = fs::directory_iterator(folder)->path();
    const std::string line = readBytes(log);
    EXPECT_TRUE(line.ends_with(" : A message\n"));
    write();
    EXPECT_EQ(readBytes(log).size(), 2 * line.size());
    fs::remove(log);
    fs::create_directory(log);
    write();
    EXPECT_TRUE(fs::is_directory(log));
    fs::remove(log);
    ASSERT_EQ(::mkfifo(log.c_str(), 0600), 0);
    write(); // nobody reads it, and nobody waits
    fs::remove(log);
    writeBytes(log, "");
    fs::resize_file(log, std::uintmax_t{1} << 32);
    write();
    EXPECT_EQ(fs::file_size(log), (std::uintmax_t{1} << 32) + line.size());
    fs::remove_all(folder);
    std::ofstream(folder) << "no folder";
    write();
    EXPECT_EQ(readBytes(folder), "no folder");
}

} // namespace
} // namespace tallowmere::test

// Files that another program has opened without sharing them.
#include "tests/bad_input/started_files.hpp"
#include "tests/support/case_count.hpp"

#include <windows.h>

namespace tallowmere::test {
namespace {

/// Another holder of a file, as another program is one.
class Holder {
  public:
    Holder(const std::filesystem::path& file, DWORD access, DWORD share)
        : handle_(::CreateFileW(file.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr)) {
        EXPECT_NE(handle_, INVALID_HANDLE_VALUE);
    }
    ~Holder() { ::CloseHandle(handle_); }
    /// Locks what may be written to.
    void lockEverything() const { EXPECT_TRUE(::LockFile(handle_, 0, 0, MAXDWORD, MAXDWORD)); }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;

  private:
    HANDLE handle_;
};

class LockedFiles : public FilesTest {};

TEST_F(LockedFiles, OpenedWithoutSharingLeaveTheirDefault) {
    CaseCount cases("files");
    for (std::size_t i = 0; i < kFiles; ++i) {
        ++cases;
        const Holder holder(path(kGoodFiles[i].path), GENERIC_READ | GENERIC_WRITE, 0);
        EXPECT_EQ(startHost(), allBut(i)) << kGoodFiles[i].path;
    }
    EXPECT_EQ(startHost(), allBut(kFiles));
}

/// A document is read with other writers denied, so one that is being written counts as absent.
TEST_F(LockedFiles, OpenForWritingAreReadUnlessTheyAreDocuments) {
    CaseCount cases("files");
    for (std::size_t i = 0; i < kFiles; ++i) {
        ++cases;
        const Holder holder(path(kGoodFiles[i].path), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
        EXPECT_EQ(startHost(), allBut(i < 2 ? i : kFiles)) << kGoodFiles[i].path;
    }
}

TEST_F(LockedFiles, OpenForReadingByOthersAreRead) {
    CaseCount cases("files");
    for (std::size_t i = 0; i < kFiles; ++i) {
        ++cases;
        const Holder holder(path(kGoodFiles[i].path), GENERIC_READ, FILE_SHARE_READ);
        EXPECT_EQ(startHost(), allBut(kFiles)) << kGoodFiles[i].path;
    }
}

/// What another program does to the log loses the line at most.
TEST_F(LockedFiles, ALogLosesTheLineWhereItMayNotBeWritten) {
    CaseCount cases("logs");
    const std::filesystem::path log = path("system.log");
    const auto append = [&] {
        ++cases;
        return platform::hostPlatform().appendLine(log.u16string(), "a line");
    };
    ASSERT_TRUE(append());
    const std::uintmax_t line = std::filesystem::file_size(log);
    std::uintmax_t lines = 1;
    {
        const Holder alone(log, GENERIC_READ | GENERIC_WRITE, 0);
        EXPECT_FALSE(append());
    }
    {
        const Holder reading(log, GENERIC_READ, FILE_SHARE_READ);
        EXPECT_FALSE(append());
    }
    {
        const Holder locking(log, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
        locking.lockEverything();
        lines += append() ? 1U : 0U; // refused by Windows; Wine doesn't look at locks
    }
    EXPECT_EQ(std::filesystem::file_size(log), lines * line);
    const Holder sharing(log, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
    EXPECT_TRUE(append());
    EXPECT_EQ(std::filesystem::file_size(log), (lines + 1) * line);
}

} // namespace
} // namespace tallowmere::test

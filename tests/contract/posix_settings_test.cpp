// The settings file on Linux: where it lies, who may have it, and that it is never half written.
#include "platform/platform.hpp"
#include "platform/settings_complaints.hpp"
#include "tests/contract/posix_children.hpp"
#include "tests/contract/posix_surroundings.hpp"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tallowmere::test {
namespace {

namespace fs = std::filesystem;

constexpr char16_t kKey[] = u"Software\\Tallowmere\\core";
const std::string kText = "Windows Registry Editor Version 5.00\r\n\r\n"
                          "[HKEY_CURRENT_USER\\Software\\Tallowmere\\core]\r\n\"Number\"=dword:00000001\r\n";

class PosixSettings : public testing::Test {
  protected:
    [[nodiscard]] static std::unique_ptr<platform::SettingsKey> open() {
        return platform::hostPlatform().openSettings(kKey);
    }
    [[nodiscard]] static std::unique_ptr<platform::SettingsKey> create() {
        return platform::hostPlatform().createSettings(kKey);
    }
    [[nodiscard]] static std::optional<std::uint32_t> number(const std::u16string& name = u"Number") {
        const auto key = open();
        std::uint32_t value = 0;
        if (key == nullptr || !key->read(name, std::as_writable_bytes(std::span(&value, 1)))) return std::nullopt;
        return value;
    }
    [[nodiscard]] static mode_t modeOf(const fs::path& path) {
        struct stat status {};
        return ::lstat(path.c_str(), &status) == 0 ? status.st_mode : 0;
    }
    [[nodiscard]] fs::path folder() const { return surroundings_.config() / "tallowmere"; }
    [[nodiscard]] fs::path lockFile() const { return folder() / "registry.reg.lock"; }
    [[nodiscard]] std::ptrdiff_t fileCount() const { return std::distance(fs::directory_iterator(folder()), {}); }
    /// Neither opened nor created, and the bytes stay.
    void expectRefused(const fs::path& file) {
        const std::string before = readBytes(file);
        EXPECT_EQ(open(), nullptr);
        EXPECT_EQ(create(), nullptr);
        EXPECT_EQ(readBytes(file), before);
    }

    PosixSurroundings surroundings_;
};

TEST_F(PosixSettings, FolderAndFileAreMadeForTheUserAlone) {
    const mode_t before = ::umask(0);
    create()->writeDword(u"Number", 1);
    ::umask(before);
    EXPECT_EQ(modeOf(folder()), mode_t{S_IFDIR | 0700});
    EXPECT_EQ(modeOf(surroundings_.settingsFile()), mode_t{S_IFREG | 0600});
    EXPECT_EQ(surroundings_.readSettings(), kText);
    EXPECT_EQ(modeOf(lockFile()), mode_t{S_IFREG | 0600});
    EXPECT_EQ(fs::file_size(lockFile()), 0U);
    EXPECT_EQ(fileCount(), 2); // nothing else is left there
}

TEST_F(PosixSettings, OpeningMakesNoFolder) {
    EXPECT_EQ(open(), nullptr);
    EXPECT_FALSE(fs::exists(folder()));
}

TEST_F(PosixSettings, WithoutTheVariableTheFolderIsBelowHome) {
    for (const std::optional<std::string>& value :
         {std::optional<std::string>(), std::optional<std::string>("config")}) {
        surroundings_.setVariable("XDG_CONFIG_HOME", value);
        create()->writeDword(u"Number", 1);
        EXPECT_EQ(readBytes(surroundings_.top() / ".config/tallowmere/registry.reg"), kText);
        EXPECT_EQ(modeOf(surroundings_.top() / ".config"), mode_t{S_IFDIR | 0700});
        fs::remove_all(surroundings_.top() / ".config");
    }
}

TEST_F(PosixSettings, AFileThatTheUserMadeIsReadAndReplacedByAPrivateOne) {
    surroundings_.writeSettings("; mine\n" + kText);
    ASSERT_EQ(::chmod(surroundings_.settingsFile().c_str(), 0644), 0);
    EXPECT_EQ(number(), 1U);
    open()->writeDword(u"Number", 2);
    EXPECT_EQ(number(), 2U);
    EXPECT_EQ(surroundings_.readSettings().substr(0, 7), "; mine\n");
    EXPECT_EQ(modeOf(surroundings_.settingsFile()), mode_t{S_IFREG | 0600});
}

TEST_F(PosixSettings, AnExportInUtf16IsTakenOverAsUtf8) {
    std::string utf16 = "\xFF\xFE";
    for (const char c : kText) utf16 += {c, '\0'};
    surroundings_.writeSettings(utf16);
    EXPECT_EQ(number(), 1U);
    open()->writeDword(u"Number", 1);
    EXPECT_EQ(surroundings_.readSettings(), kText);
}

TEST_F(PosixSettings, SymbolicLinksAreNotFollowed) {
    const fs::path elsewhere = surroundings_.top() / "elsewhere";
    fs::create_directory(elsewhere);
    writeBytes(elsewhere / "registry.reg", kText);
    fs::create_directory_symlink(elsewhere, folder());
    expectRefused(elsewhere / "registry.reg");
    fs::remove(folder());
    fs::create_directory(folder());
    fs::create_symlink(elsewhere / "registry.reg", surroundings_.settingsFile());
    expectRefused(elsewhere / "registry.reg");
    fs::create_directory_symlink(surroundings_.config(), surroundings_.top() / "link");
    fs::remove(surroundings_.settingsFile());
    surroundings_.writeSettings(kText);
    for (const char* ending : {"", "/", "//", "/.", "/./"}) {
        surroundings_.setVariable("XDG_CONFIG_HOME", (surroundings_.top() / "link").string() + ending);
        expectRefused(surroundings_.settingsFile());
        surroundings_.setVariable("XDG_CONFIG_HOME", surroundings_.config().string() + ending);
        EXPECT_EQ(number(), 1U) << ending;
    }
}

TEST_F(PosixSettings, ALinkInPlaceOfTheNewFileIsNotFollowed) {
    surroundings_.writeSettings(kText);
    writeBytes(surroundings_.top() / "victim", "precious");
    fs::create_symlink(surroundings_.top() / "victim", folder() / "registry.reg.new");
    open()->writeDword(u"Number", 2);
    EXPECT_EQ(number(), 2U);
    EXPECT_EQ(readBytes(surroundings_.top() / "victim"), "precious");
}

TEST_F(PosixSettings, WhatStrangersMayWriteToIsRefused) {
    surroundings_.writeSettings(kText);
    for (const mode_t mode : {0606U, 0660U, 0664U}) {
        ASSERT_EQ(::chmod(surroundings_.settingsFile().c_str(), mode), 0);
        expectRefused(surroundings_.settingsFile());
    }
    ASSERT_EQ(::chmod(surroundings_.settingsFile().c_str(), 0600), 0);
    for (const mode_t mode : {0707U, 0770U, 02775U}) {
        ASSERT_EQ(::chmod(folder().c_str(), mode), 0);
        expectRefused(surroundings_.settingsFile());
    }
    ASSERT_EQ(::chmod(folder().c_str(), 02755), 0);
    EXPECT_EQ(number(), 1U);
}

TEST_F(PosixSettings, ObjectsOfAnotherKindAreRefused) {
    fs::create_directories(surroundings_.settingsFile());
    EXPECT_EQ(open(), nullptr);
    EXPECT_EQ(create(), nullptr);
    fs::remove(surroundings_.settingsFile());
    ASSERT_EQ(::mkfifo(surroundings_.settingsFile().c_str(), 0600), 0);
    EXPECT_EQ(open(), nullptr);
    EXPECT_EQ(create(), nullptr);
}

TEST_F(PosixSettings, AFileBeyondTheLargestSizeIsAsIfAbsentAndStays) {
    surroundings_.writeSettings(kText);
    fs::resize_file(surroundings_.settingsFile(), 16U << 20);
    EXPECT_EQ(number(), 1U);
    fs::resize_file(surroundings_.settingsFile(), (16U << 20) + 1);
    EXPECT_EQ(open(), nullptr);
    EXPECT_EQ(create(), nullptr);
    EXPECT_EQ(fs::file_size(surroundings_.settingsFile()), (16U << 20) + 1);
}

TEST_F(PosixSettings, AWriterKilledAtAnySystemCallLeavesTheOldOrTheNewFile) {
    Stepped stepped = Stepped::Stopped;
    std::optional<std::uint32_t> seen;
    int calls = 0;
    for (; stepped == Stepped::Stopped; ++calls) {
        surroundings_.writeSettings(kText);
        stepped = killAfterSystemCalls(
            calls, [] { open()->writeDword(u"Number", 2); },
            [&] {
                seen = number();
                EXPECT_TRUE(seen == 1U || seen == 2U) << calls;
            });
        if (stepped == Stepped::Unavailable) GTEST_SKIP() << "this process may not trace its children";
        EXPECT_TRUE(number() == 1U || number() == 2U) << calls;
        create()->writeDword(u"Other", 3);
        EXPECT_EQ(number(u"Other"), 3U) << calls;
        EXPECT_EQ(fileCount(), 2) << calls; // the settings and the lock
    }
    EXPECT_EQ(number(), 2U);
    EXPECT_GT(calls, 20);
}

TEST_F(PosixSettings, WritersAtOnceLoseNothingOfEachOthers) {
    constexpr int kWriters = 4;
    constexpr int kValues = 15;
    const auto nameOf = [](int writer, int value) {
        const std::string name = std::to_string(writer) + "_" + std::to_string(value);
        return std::u16string(name.begin(), name.end());
    };
    std::vector<std::unique_ptr<Child>> children;
    for (int writer = 0; writer < kWriters; ++writer)
        children.push_back(std::make_unique<Child>([&](const Child::Line& line) {
            line.await();
            const auto key = create();
            for (int value = 0; value < kValues; ++value) key->writeDword(nameOf(writer, value), 7);
            return 0;
        }));
    for (const auto& child : children) child->go();
    for (const auto& child : children) EXPECT_EQ(child->finish(), 0);
    for (int writer = 0; writer < kWriters; ++writer)
        for (int value = 0; value < kValues; ++value) EXPECT_EQ(number(nameOf(writer, value)), 7U);
}

TEST_F(PosixSettings, AStoppedWriterHoldsOthersUpForABoundedTimeOnly) {
    surroundings_.writeSettings(kText);
    const auto key = open();
    const int lock = ::open(lockFile().c_str(), O_RDWR | O_CREAT, 0600);
    ASSERT_EQ(::flock(lock, LOCK_EX), 0);
    const auto start = std::chrono::steady_clock::now();
    key->writeDword(u"Number", 2);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
    EXPECT_EQ(number(), 1U); // reading waits for nobody
    ::close(lock);
    key->writeDword(u"Number", 2);
    EXPECT_EQ(number(), 2U);
}

/// Everybody who may read the folder or the file can lock them.
TEST_F(PosixSettings, ALockOfTheFolderOrTheFileHoldsNobodyUp) {
    surroundings_.writeSettings(kText);
    const int ofFolder = ::open(folder().c_str(), O_RDONLY | O_DIRECTORY);
    const int ofFile = ::open(surroundings_.settingsFile().c_str(), O_RDONLY);
    ASSERT_EQ(::flock(ofFolder, LOCK_EX), 0);
    ASSERT_EQ(::flock(ofFile, LOCK_EX), 0);
    open()->writeDword(u"Number", 2);
    EXPECT_EQ(number(), 2U);
    ::close(ofFolder);
    ::close(ofFile);
}

TEST_F(PosixSettings, ALockFileOpenToOthersIsClosedToThemAgain) {
    surroundings_.writeSettings(kText);
    writeBytes(lockFile(), "");
    ASSERT_EQ(::chmod(lockFile().c_str(), 0666), 0);
    open()->writeDword(u"Number", 2);
    EXPECT_EQ(number(), 2U);
    EXPECT_EQ(modeOf(lockFile()), mode_t{S_IFREG | 0600});
}

TEST_F(PosixSettings, ALockThatIsNoFileLeavesTheOldSettings) {
    surroundings_.writeSettings(kText);
    writeBytes(surroundings_.top() / "victim", "precious");
    fs::create_symlink(surroundings_.top() / "victim", lockFile());
    open()->writeDword(u"Number", 2);
    fs::remove(lockFile());
    ASSERT_EQ(::mkfifo(lockFile().c_str(), 0600), 0);
    open()->writeDword(u"Number", 2);
    EXPECT_EQ(number(), 1U);
    EXPECT_EQ(readBytes(surroundings_.top() / "victim"), "precious");
}

TEST_F(PosixSettings, AFolderThatTakesNoFileLeavesTheOldOne) {
    surroundings_.writeSettings(kText);
    fs::create_directories(folder() / "registry.reg.new" / "inside"); // can't be removed as a file
    open()->writeDword(u"Number", 2);
    EXPECT_EQ(number(), 1U);
}

TEST_F(PosixSettings, AFileSizeLimitLeavesTheOldFileNoOtherAndEndsNobody) {
    surroundings_.writeSettings(kText);
    for (const rlim_t bytes : {rlim_t{0}, rlim_t{10}}) {
        Child child([bytes](const Child::Line&) {
            const rlimit limit{bytes, bytes};
            std::signal(SIGXFSZ, SIG_DFL);
            if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return 1;
            open()->writeDword(u"Number", 2);
            return number() == 1U ? 0 : 2;
        });
        EXPECT_EQ(child.finish(), 0) << bytes;
        EXPECT_EQ(surroundings_.readSettings(), kText) << bytes;
        EXPECT_EQ(fileCount(), 2) << bytes; // the settings and the lock
    }
}

TEST_F(PosixSettings, NoDescriptorIsLeftOpen) {
    const int before = openFileCount();
    for (int i = 0; i < 5; ++i) create()->writeDword(u"Number", 2);
    fs::remove(surroundings_.settingsFile());
    EXPECT_EQ(open(), nullptr);
    EXPECT_EQ(openFileCount(), before);
}

TEST_F(PosixSettings, ComplaintsAreAboutTheFileThatIsThere) {
    const auto complaints = [] { return platform::settingsComplaints(); };
    EXPECT_TRUE(complaints().empty());
    surroundings_.writeSettings(kText);
    EXPECT_TRUE(complaints().empty());
    surroundings_.writeSettings(kText + "Number=1\r\n");
    ASSERT_EQ(complaints().size(), 1U);
    EXPECT_EQ(complaints()[0].line, 5U);
    EXPECT_EQ(fs::path(complaints()[0].file), surroundings_.settingsFile());
    fs::permissions(surroundings_.settingsFile(), fs::perms::all); // writable by strangers: not taken
    ASSERT_EQ(complaints().size(), 1U);
    EXPECT_EQ(complaints()[0].line, 0U);
}

} // namespace
} // namespace tallowmere::test

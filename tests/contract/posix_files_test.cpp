// Files, folders, clock and error line where Linux has its own ways.
#include "platform/durable_file.hpp"
#include "platform/platform.hpp"
#include "tests/contract/posix_children.hpp"
#include "tests/contract/posix_surroundings.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <functional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tallowmere::test {
namespace {

namespace fs = std::filesystem;

/// In a child that may make files no larger than this; its result.
int runWithFileLimit(rlim_t bytes, const std::function<int()>& body) {
    Child child([&](const Child::Line&) {
        const rlimit limit{bytes, bytes};
        std::signal(SIGXFSZ, SIG_DFL);
        return ::setrlimit(RLIMIT_FSIZE, &limit) == 0 ? body() : 99;
    });
    return child.finish();
}

class PosixFiles : public testing::Test {
  protected:
    [[nodiscard]] std::u16string path(const char* name) const { return (surroundings_.top() / name).u16string(); }

    platform::Platform& platform_ = platform::hostPlatform();
    PosixSurroundings surroundings_;
};

TEST_F(PosixFiles, APipeHoldsNobodyUp) {
    ASSERT_EQ(::mkfifo((surroundings_.top() / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(platform_.openFile(path("pipe")), nullptr);
    EXPECT_FALSE(platform_.appendLine(path("pipe"), "x"));
    const int reader = ::open((surroundings_.top() / "pipe").c_str(), O_RDONLY | O_NONBLOCK);
    EXPECT_FALSE(platform_.appendLine(path("pipe"), "x"));
    ::close(reader);
}

TEST_F(PosixFiles, DevicesAreNoFiles) {
    EXPECT_EQ(platform_.openFile(u"/dev/zero"), nullptr);
    EXPECT_FALSE(platform_.appendLine(u"/dev/null", "x"));
}

/// A mask that leaves others everything, as some daemons have it, must not let them put files into the data folder.
TEST_F(PosixFiles, NewFilesAndFoldersAreTheUsersAloneWhateverTheMask) {
    for (const mode_t mask : {0U, 002U, 022U, 027U, 077U}) {
        const mode_t before = ::umask(mask);
        platform_.makeDirectory(path("folder"));
        EXPECT_TRUE(platform_.appendLine(path("log"), "x"));
        ::umask(before);
        EXPECT_EQ(fs::status(surroundings_.top() / "folder").permissions(), fs::perms{0700}) << mask;
        EXPECT_EQ(fs::status(surroundings_.top() / "log").permissions(), fs::perms{0600}) << mask;
        fs::remove(surroundings_.top() / "folder");
        fs::remove(surroundings_.top() / "log");
    }
}

/// It is for others to read, as far as the mask says so.
TEST_F(PosixFiles, ANewDurableFileIsForOthersToReadAndNotToWrite) {
    for (const auto& [mask, mode] : {std::pair{0U, 0644U}, {002U, 0644U}, {027U, 0640U}, {077U, 0600U}}) {
        const mode_t before = ::umask(mask);
        EXPECT_NE(platform::makeDurableFile(path("recording")), nullptr);
        ::umask(before);
        EXPECT_EQ(fs::status(surroundings_.top() / "recording").permissions(), fs::perms(mode)) << mask;
        fs::remove(surroundings_.top() / "recording");
    }
}

TEST_F(PosixFiles, NoLineIsAppendedThroughALink) {
    writeBytes(surroundings_.top() / "precious", "precious");
    fs::create_symlink(surroundings_.top() / "precious", surroundings_.top() / "log");
    EXPECT_FALSE(platform_.appendLine(path("log"), "x"));
    EXPECT_EQ(readBytes(surroundings_.top() / "precious"), "precious");
    fs::remove(surroundings_.top() / "precious");
    EXPECT_FALSE(platform_.appendLine(path("log"), "x"));
    EXPECT_FALSE(fs::exists(surroundings_.top() / "precious"));
}

TEST_F(PosixFiles, LinesOfSeveralProcessesStayWhole) {
    constexpr int kLines = 200;
    std::vector<std::unique_ptr<Child>> children;
    for (const char letter : {'a', 'b', 'c'})
        children.push_back(std::make_unique<Child>([this, letter](const Child::Line&) {
            for (int i = 0; i < kLines; ++i) platform_.appendLine(path("log"), std::string(100, letter));
            return 0;
        }));
    for (const auto& child : children) EXPECT_EQ(child->finish(), 0);
    const std::string bytes = readBytes(surroundings_.top() / "log");
    ASSERT_EQ(bytes.size(), 3U * kLines * 101);
    for (std::size_t line = 0; line < bytes.size(); line += 101)
        EXPECT_EQ(bytes.substr(line, 101), std::string(100, bytes[line]) + "\n");
}

TEST_F(PosixFiles, ALineBeyondTheFileSizeLimitIsNotAppendedAndEndsNobody) {
    EXPECT_TRUE(platform_.appendLine(path("log"), "x"));
    EXPECT_EQ(runWithFileLimit(2, [this] { return platform_.appendLine(path("log"), "y") ? 1 : 0; }), 0);
    EXPECT_EQ(readBytes(surroundings_.top() / "log"), "x\n");
}

TEST_F(PosixFiles, ADurableFileBeyondTheFileSizeLimitIsAFailureAndEndsNobody) {
    EXPECT_EQ(runWithFileLimit(3,
                               [this] {
                                   const auto file = platform::makeDurableFile(path("new"));
                                   return file != nullptr && file->write("123") && !file->write("4") ? 0 : 1;
                               }),
              0);
    EXPECT_EQ(readBytes(surroundings_.top() / "new"), "123");
}

TEST_F(PosixFiles, AFileSizeLimitLeavesTheSignalsAsTheHostHasThem) {
    EXPECT_EQ(runWithFileLimit(0,
                               [this] {
                                   if (platform_.appendLine(path("log"), "x")) return 1;
                                   sigset_t signals;
                                   ::sigpending(&signals);
                                   if (::sigismember(&signals, SIGXFSZ) != 0) return 2;
                                   ::pthread_sigmask(SIG_BLOCK, nullptr, &signals);
                                   if (::sigismember(&signals, SIGXFSZ) != 0) return 3;
                                   ::sigaddset(&signals, SIGXFSZ); // a host that waits for the signal keeps its own
                                   ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
                                   ::raise(SIGXFSZ);
                                   if (platform_.appendLine(path("log"), "x")) return 4;
                                   ::sigpending(&signals);
                                   return ::sigismember(&signals, SIGXFSZ) == 1 ? 0 : 5;
                               }),
              0);
}

TEST_F(PosixFiles, TheDataFolderIsMadeWhereMissing) {
    fs::remove(surroundings_.data());
    EXPECT_EQ(platform_.programDataFolder(), surroundings_.data().u16string());
    EXPECT_TRUE(fs::is_directory(surroundings_.data()));
    surroundings_.setVariable("XDG_DATA_HOME", std::nullopt);
    EXPECT_EQ(platform_.programDataFolder(), path(".local/share"));
    EXPECT_EQ(fs::status(surroundings_.top() / ".local/share").permissions(), fs::perms{0700});
    surroundings_.setVariable("XDG_DATA_HOME", "relative");
    EXPECT_EQ(platform_.programDataFolder(), path(".local/share"));
}

TEST_F(PosixFiles, WithoutHomeTheAccountListTellsIt) {
    constexpr uid_t kDaemon = 1; // its home is a folder of the system's, where it can't write
    if (::geteuid() != 0) GTEST_SKIP() << "takes another user";
    surroundings_.setVariable("XDG_DATA_HOME", std::nullopt);
    surroundings_.setVariable("HOME", std::nullopt);
    EXPECT_EQ(runAs(kDaemon,
                    [this] {
                        const std::u16string folder = platform_.programDataFolder();
                        return folder.ends_with(u"/.local/share") && folder.starts_with(u"/") ? 0 : 1;
                    }),
              0);
    EXPECT_EQ(runAs(54321, [this] { return platform_.programDataFolder().empty() ? 0 : 1; }), 0); // unknown
}

TEST_F(PosixFiles, TheHostExecutableIsThisProgram) {
    EXPECT_EQ(platform_.hostExecutable(), fs::read_symlink("/proc/self/exe").u16string());
}

TEST_F(PosixFiles, NoDescriptorIsLeftOpen) {
    const int before = openFileCount();
    writeBytes(surroundings_.top() / "file", "<a/>");
    for (int i = 0; i < 5; ++i) {
        const auto reader = platform_.openFile(path("file"));
        const auto document = platform_.openXml(path("file"));
        EXPECT_TRUE(platform_.appendLine(path("log"), "x"));
    }
    EXPECT_EQ(platform_.openFile(surroundings_.top().u16string()), nullptr);
    EXPECT_EQ(openFileCount(), before);
}

TEST_F(PosixFiles, TheTimeZoneFollowsTheVariable) {
    surroundings_.setVariable("TZ", "EAST-5:30");
    EXPECT_EQ(platform_.timeZone()->bias, -330);
    EXPECT_FALSE(platform_.timeZone()->daylight);
    surroundings_.setVariable("TZ", "WEST4");
    EXPECT_EQ(platform_.timeZone()->bias, 240);
    surroundings_.setVariable("TZ", "EST5EDT4,0/0,J365/25"); // daylight saving all the year
    const platform::TimeZone zone = platform_.timeZone().value();
    EXPECT_TRUE(zone.daylight);
    EXPECT_EQ(zone.bias, 300);
    EXPECT_EQ(zone.daylightBias, -60);
}

TEST_F(PosixFiles, NowIsTheSystemsClock) {
    timespec before{};
    timespec after{};
    ::clock_gettime(CLOCK_REALTIME, &before);
    const std::int64_t now = platform_.now();
    ::clock_gettime(CLOCK_REALTIME, &after);
    const auto ticks = [](const timespec& time) {
        return 116'444'736'000'000'000 + time.tv_sec * 10'000'000 + time.tv_nsec / 100;
    };
    EXPECT_GE(now, ticks(before));
    EXPECT_LE(now, ticks(after));
}

TEST_F(PosixFiles, ASignalDoesNotShortenASleep) {
    struct sigaction action {};
    action.sa_handler = [](int) {};
    ::sigaction(SIGALRM, &action, nullptr);
    ::ualarm(5000, 5000);
    const std::int64_t before = platform_.now();
    platform_.sleepMilliseconds(60);
    ::ualarm(0, 0);
    EXPECT_GE(platform_.now() - before, 55 * 10'000);
}

/// What a child prints to standard error, which is the writing end of this pipe.
class PosixErrorLine : public PosixFiles {
  protected:
    PosixErrorLine() { EXPECT_EQ(::pipe(pipe_), 0); }
    ~PosixErrorLine() override {
        ::close(pipe_[0]);
        ::close(pipe_[1]);
    }
    int showInChild(const std::u16string& message) {
        Child child([&](const Child::Line&) {
            ::dup2(pipe_[1], STDERR_FILENO);
            ::close(pipe_[0]);
            std::signal(SIGPIPE, SIG_DFL);
            platform_.showError(message);
            return 7;
        });
        return child.finish();
    }

    int pipe_[2] = {-1, -1};
};

TEST_F(PosixErrorLine, IsOneLineWithTheProgramsName) {
    EXPECT_EQ(showInChild(u"Unable to map shared memory \u00FC"), 7);
    char bytes[200];
    const ssize_t count = ::read(pipe_[0], bytes, sizeof bytes);
    EXPECT_EQ(std::string(bytes, static_cast<std::size_t>(count)),
              "tallowmere: Unable to map shared memory \xC3\xBC\n");
}

TEST_F(PosixErrorLine, IntoAPipeThatNobodyReadsEndsNobody) {
    ::close(pipe_[0]);
    pipe_[0] = -1;
    EXPECT_EQ(showInChild(u"message"), 7);
}

TEST_F(PosixErrorLine, IntoAFileAtItsLargestSizeEndsNobody) {
    const int file = ::open((surroundings_.top() / "errors").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_GE(file, 0);
    EXPECT_EQ(runWithFileLimit(0,
                               [&] {
                                   ::dup2(file, STDERR_FILENO);
                                   platform_.showError(u"message");
                                   return 7;
                               }),
              7);
    ::close(file);
    EXPECT_EQ(fs::file_size(surroundings_.top() / "errors"), 0U);
}

TEST_F(PosixErrorLine, IntoAFullPipeHoldsNobodyUp) {
    ASSERT_EQ(::fcntl(pipe_[1], F_SETFL, O_NONBLOCK), 0);
    const std::string filling(4096, 'x');
    while (::write(pipe_[1], filling.data(), filling.size()) > 0) {
    }
    ASSERT_EQ(::fcntl(pipe_[1], F_SETFL, 0), 0);
    EXPECT_EQ(showInChild(u"message"), 7);
}

} // namespace
} // namespace tallowmere::test

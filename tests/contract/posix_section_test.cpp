// How the section's file lives on Linux: who is killed, who is stopped, what lies under its name.
#include "platform/platform.hpp"
#include "platform/posix/descriptor.hpp"
#include "platform/posix/section.hpp"
#include "tests/contract/posix_children.hpp"
#include "tests/contract/posix_surroundings.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <pwd.h>
#include <random>
#include <sched.h>
#include <span>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {
int fallocateError = 0; // EOPNOTSUPP as on file systems that can't take space ahead
std::function<void()> beforeSleep = [] {};
} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's own names
extern "C" int __real_fallocate(int file, int mode, off_t start, off_t size);
extern "C" int __wrap_fallocate(int file, int mode, off_t start, off_t size);
extern "C" int __wrap_fallocate(int file, int mode, off_t start, off_t size) {
    if (fallocateError == 0) return __real_fallocate(file, mode, start, size);
    errno = fallocateError;
    return -1;
}
extern "C" int __real_clock_nanosleep(clockid_t clock, int flags, const timespec* time, timespec* left);
extern "C" int __wrap_clock_nanosleep(clockid_t clock, int flags, const timespec* time, timespec* left);
extern "C" int __wrap_clock_nanosleep(clockid_t clock, int flags, const timespec* time, timespec* left) {
    beforeSleep();
    return __real_clock_nanosleep(clock, flags, time, left);
}
// NOLINTEND(bugprone-reserved-identifier)

namespace tallowmere::test {
namespace {

namespace fs = std::filesystem;
using platform::SharedSection;
using Seconds = std::chrono::duration<double>;

constexpr std::size_t kBytes = 253'336;
constexpr uid_t kUser = 54321; // who may not do everything
constexpr char16_t kName[] = u"Section_1";

std::unique_ptr<SharedSection> openOrCreate(const std::u16string& name = kName, std::size_t bytes = kBytes) {
    return platform::hostPlatform().openOrCreateSection(name, bytes);
}
std::unique_ptr<SharedSection> open(std::size_t bytes = kBytes) {
    return platform::hostPlatform().openSection(kName, bytes);
}

bool isZeroed(const SharedSection& section) {
    return std::ranges::all_of(std::span(section.view(), kBytes), [](std::byte b) { return b == std::byte{0}; });
}

bool isNew(const SharedSection* section) {
    return section != nullptr && section->view() != nullptr && !section->existed() && isZeroed(*section);
}

template <class Body> double secondsOf(Body body) {
    const auto start = std::chrono::steady_clock::now();
    body();
    return Seconds(std::chrono::steady_clock::now() - start).count();
}

constexpr double kMakersTime = 0.5; // seconds that a maker is waited for

/// Locks the section's life byte in the way that the section does.
bool lockLifeByte(int file, short type) {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = platform::posix::kLifeByte;
    lock.l_len = 1;
    return ::fcntl(file, F_OFD_SETLK, &lock) == 0;
}

class PosixSection : public testing::Test {
  protected:
    [[nodiscard]] fs::path file() const { return surroundings_.runtime() / "Section_1"; }
    [[nodiscard]] mode_t modeOf(const fs::path& path) const {
        struct stat status {};
        return ::lstat(path.c_str(), &status) == 0 ? status.st_mode : 0;
    }

    /// Nobody holds the section's file, if there is one.
    [[nodiscard]] bool isFree() const {
        const platform::posix::Descriptor held(::open(file().c_str(), O_RDWR | O_CLOEXEC));
        return !held || lockLifeByte(held.get(), F_WRLCK);
    }

    PosixSurroundings surroundings_;
};

TEST_F(PosixSection, ItsFileIsNamedLikeItAndTheUsersAlone) {
    const auto section = openOrCreate();
    ASSERT_TRUE(isNew(section.get()));
    EXPECT_EQ(modeOf(file()), mode_t{S_IFREG | S_IRUSR | S_IWUSR});
    EXPECT_EQ(fs::file_size(file()), kBytes);
}

TEST_F(PosixSection, AMaskOfTheUsersOwnRightsDoesNoHarm) {
    const mode_t before = ::umask(0777);
    auto section = openOrCreate();
    ::umask(before);
    ASSERT_NE(section, nullptr);
    EXPECT_EQ(modeOf(file()), mode_t{S_IFREG | S_IRUSR | S_IWUSR});
}

TEST_F(PosixSection, ItsMakerIsTheFilesOwner) {
    const auto section = openOrCreate();
    ASSERT_NE(section, nullptr);
    const passwd* account = ::getpwuid(::geteuid());
    ASSERT_NE(account, nullptr);
    EXPECT_EQ(section->maker(), fs::path(account->pw_name).u16string());
}

TEST_F(PosixSection, InAProgramWithoutStandardStreamsItNeverBecomesOne) {
    Child daemon([](const Child::Line&) {
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::close(stream);
        const auto section = openOrCreate();
        if (section == nullptr) return 1;
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            if (::fcntl(stream, F_GETFD) != -1) return 2;
        return 0;
    });
    EXPECT_EQ(daemon.finish(), 0);
}

TEST_F(PosixSection, AFileSizeLimitBelowItsSizeMakesItFailAndEndsNobody) {
    Child limited([](const Child::Line&) {
        const rlimit limit{1000, 1000};
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return 1;
        return openOrCreate() == nullptr ? 0 : 2;
    });
    EXPECT_EQ(limited.finish(), 0);
    EXPECT_TRUE(isNew(openOrCreate().get()));
}

TEST_F(PosixSection, ARemnantOfAnySizeAndContentIsMadeNew) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, kBytes, kBytes + 5000}) {
        writeBytes(file(), std::string(size, 'x'));
        fs::permissions(file(), fs::perms::owner_read | fs::perms::owner_write);
        EXPECT_EQ(open(), nullptr);
        EXPECT_TRUE(isNew(openOrCreate().get())) << size;
    }
}

TEST_F(PosixSection, ALargerSectionUnderTheNameIsNotMappedEither) {
    const auto large = openOrCreate(kName, kBytes + 1);
    ASSERT_NE(large, nullptr);
    const auto section = openOrCreate();
    ASSERT_NE(section, nullptr);
    EXPECT_EQ(section->view(), nullptr);
}

TEST_F(PosixSection, WhoWaitsForAMappingThatFailsDoesNotWaitLong) {
    const auto small = openOrCreate(kName, 4096);
    EXPECT_LT(secondsOf([] { EXPECT_EQ(openOrCreate()->view(), nullptr); }), kMakersTime);
}

TEST_F(PosixSection, ObjectsOfAnotherKindUnderTheNameMakeItFail) {
    const auto refuses = [this](const char* what) {
        const mode_t mode = modeOf(file());
        EXPECT_EQ(openOrCreate(), nullptr) << what;
        EXPECT_EQ(open(), nullptr) << what;
        EXPECT_EQ(modeOf(file()), mode) << what;
        fs::remove_all(file());
    };
    fs::create_directory(file());
    refuses("a folder");
    ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
    refuses("a pipe");
    fs::create_symlink("/dev/null", file());
    refuses("a link to a device");
    fs::create_symlink(surroundings_.top() / "nothing", file());
    refuses("a link to nothing");
    EXPECT_FALSE(fs::exists(surroundings_.top() / "nothing"));
    const int socket = ::socket(AF_UNIX, SOCK_DGRAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::ranges::copy(file().string(), std::begin(address.sun_path));
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    refuses("a socket");
    ::close(socket);
}

TEST_F(PosixSection, ALinkedFileIsNeitherUsedNorChanged) {
    const fs::path other = surroundings_.top() / "other";
    writeBytes(other, "precious");
    fs::permissions(other, fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink(other, file());
    EXPECT_EQ(openOrCreate(), nullptr);
    EXPECT_TRUE(fs::is_symlink(file()));
    EXPECT_EQ(readBytes(other), "precious");
}

/// What nobody holds is in the way for ever, unless it is removed.
TEST_F(PosixSection, ARemnantWithASecondNameLosesTheSectionsOnly) {
    const fs::path other = surroundings_.runtime() / "other";
    for (const char* bytes : {"", "precious"}) {
        writeBytes(other, bytes);
        fs::permissions(other, fs::perms::owner_read | fs::perms::owner_write);
        fs::create_hard_link(other, file());
        EXPECT_EQ(open(), nullptr);
        const auto section = openOrCreate();
        EXPECT_TRUE(isNew(section.get()));
        EXPECT_FALSE(fs::equivalent(other, file()));
        EXPECT_EQ(readBytes(other), bytes);
        fs::remove(file());
    }
}

TEST_F(PosixSection, ARemnantThatOthersMayReadIsReplaced) {
    const fs::path other = surroundings_.runtime() / "other";
    for (const mode_t mode : {0640U, 0604U, 0620U, 0666U, 0777U, 07777U}) {
        for (const char* bytes : {"", "x"}) {
            writeBytes(file(), bytes);
            ASSERT_EQ(::chmod(file().c_str(), mode), 0);
            fs::create_hard_link(file(), other);
            EXPECT_EQ(open(), nullptr) << mode;
            EXPECT_TRUE(isNew(openOrCreate().get())) << mode;
            EXPECT_EQ(modeOf(file()), mode_t{S_IFREG | S_IRUSR | S_IWUSR});
            EXPECT_EQ(readBytes(other), bytes);
            fs::remove(file());
            fs::remove(other);
        }
    }
}

/// Others may have it open already.
TEST_F(PosixSection, ASectionInUseThatOthersMayReadIsRefused) {
    const auto section = openOrCreate();
    ASSERT_NE(section, nullptr);
    section->view()[3] = std::byte{3};
    const auto isRefused = [] {
        return openOrCreate() == nullptr && open() == nullptr &&
               platform::hostPlatform().lookAtSection(kName, kBytes) == nullptr;
    };
    for (const mode_t mode : {0640U, 0604U, 0620U, 0666U}) {
        ASSERT_EQ(::chmod(file().c_str(), mode), 0);
        EXPECT_TRUE(isRefused()) << mode;
    }
    ASSERT_EQ(::chmod(file().c_str(), 0600), 0);
    fs::create_hard_link(file(), surroundings_.runtime() / "other");
    EXPECT_TRUE(isRefused());
    fs::remove(surroundings_.runtime() / "other");
    const auto next = openOrCreate();
    ASSERT_NE(next, nullptr);
    EXPECT_EQ(next->view()[3], std::byte{3});
}

/// Two who come at once for a remnant that others may read find each other in it, and neither is alone.
TEST_F(PosixSection, WhoMeetsAnotherNewcomerOverARemnantOpenToOthersTriesAgain) {
    writeBytes(file(), "x");
    ASSERT_EQ(::chmod(file().c_str(), 0644), 0);
    const platform::posix::Descriptor other(::open(file().c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_TRUE(lockLifeByte(other.get(), F_RDLCK));
    int sleeps = 0;
    beforeSleep = [&] {
        if (++sleeps == 3) lockLifeByte(other.get(), F_UNLCK);
    };
    const auto section = openOrCreate();
    beforeSleep = [] {};
    EXPECT_TRUE(isNew(section.get()));
    EXPECT_EQ(sleeps, 3);
}

/// A mask may have kept the user's own rights off the file, or somebody have taken them.
TEST_F(PosixSection, AFileWithoutTheUsersOwnRightsGetsThemBack) {
    surroundings_.giveTo(kUser);
    const auto ofUser = [this] {
        for (const mode_t mode : {0U, 0200U, 0400U, 0444U, 0500U}) {
            writeBytes(file(), "x");
            ::chmod(file().c_str(), mode);
            auto section = openOrCreate();
            if (!isNew(section.get())) return 1;
            section->view()[3] = std::byte{3};
            ::chmod(file().c_str(), mode & S_IRWXU);
            const auto next = openOrCreate(); // in use, it is joined
            if (next == nullptr || !next->existed() || next->view()[3] != std::byte{3}) return 2;
            if (modeOf(file()) != (S_IFREG | S_IRUSR | S_IWUSR | (mode & S_IXUSR))) return 3;
        }
        ::umask(0777);
        fs::remove(file());
        return isNew(openOrCreate().get()) ? 0 : 4;
    };
    EXPECT_EQ(::geteuid() == 0 ? runAs(kUser, ofUser) : Child([&](const Child::Line&) { return ofUser(); }).finish(),
              0);
}

/// Somebody is stopped at each step on the way to a remnant with a second name, which meanwhile others replace. Whether
/// it was in use when they came or not, they end up with everybody else or with none, and never alone in the remnant.
TEST_F(PosixSection, WhoIsHeldUpWhileARemnantIsReplacedFindsTheNewOne) {
    const fs::path other = surroundings_.runtime() / "other";
    for (const bool wasInUse : {false, true}) {
        int calls = 0;
        for (Stepped stepped = Stepped::Stopped; stepped == Stepped::Stopped; ++calls) {
            fs::remove(file());
            auto old = openOrCreate();
            ASSERT_NE(old, nullptr);
            fs::create_hard_link(file(), other);
            if (!wasInUse) {
                old.reset();
                fs::resize_file(file(), 0); // else it would not be taken for a section to be made
            }
            stepped = carryOnAfterSystemCalls(
                calls,
                [wasInUse, &old] {
                    old.reset(); // the hold is the other's alone
                    const auto section = openOrCreate();
                    if (section == nullptr) return wasInUse ? 0 : 1;
                    section->view()[17] = std::byte{17};
                    const auto again = openOrCreate();
                    return again != nullptr && again->view()[17] == std::byte{17} ? 0 : 2;
                },
                [&] {
                    old.reset();
                    if (isFree()) openOrCreate(); // else it is kept from being replaced
                });
            if (stepped == Stepped::Unavailable) GTEST_SKIP() << "this process may not trace its children";
            EXPECT_NE(stepped, Stepped::Failed) << calls;
            fs::remove(other);
        }
        EXPECT_GT(calls, 20);
    }
}

TEST_F(PosixSection, NamesThatAreNoFileNamesMakeItFail) {
    for (const std::u16string& name : {std::u16string(), std::u16string(u"."), std::u16string(u".."),
                                       std::u16string(u"a/b"), std::u16string(u"a\0b", 3), std::u16string(300, u'n')})
        EXPECT_EQ(openOrCreate(name), nullptr);
}

TEST_F(PosixSection, AKilledHolderLetsItGo) {
    Child child([](const Child::Line& line) {
        const auto section = openOrCreate();
        std::ranges::fill(std::span(section->view(), kBytes), std::byte{0xAA});
        line.say('r');
        line.await();
        return 0;
    });
    ASSERT_EQ(child.hear(), 'r');
    EXPECT_TRUE(openOrCreate()->existed());
    child.kill();
    EXPECT_EQ(open(), nullptr);
    EXPECT_TRUE(isNew(openOrCreate().get()));
}

TEST_F(PosixSection, OpenersKeepTheSectionOfAKilledMaker) {
    Child child([](const Child::Line& line) {
        const auto section = openOrCreate();
        section->view()[17] = std::byte{17};
        line.say('r');
        line.await();
        return 0;
    });
    ASSERT_EQ(child.hear(), 'r');
    const auto opened = openOrCreate();
    child.kill();
    const auto next = openOrCreate();
    ASSERT_NE(next, nullptr);
    EXPECT_TRUE(next->existed());
    EXPECT_EQ(next->view()[17], std::byte{17});
}

/// The child is stopped at each step of its work in turn. Meanwhile others get a usable section or a prompt
/// refusal; once it is killed, the next one is new and zeroed.
TEST_F(PosixSection, AMakerKilledAtAnySystemCallLeavesNothingToCleanUp) {
    int calls = 0;
    Stepped stepped = Stepped::Stopped;
    for (; stepped == Stepped::Stopped; ++calls) {
        writeBytes(file(), std::string(kBytes, 'x')); // of an earlier life
        fs::permissions(file(), fs::perms::owner_read | fs::perms::owner_write);
        stepped = killAfterSystemCalls(
            calls,
            [] {
                const auto section = openOrCreate();
                std::ranges::fill(std::span(section->view(), kBytes), std::byte{0xAA});
                ::getppid(); // a last stop, with the section in use
            },
            [calls] {
                const double seconds = secondsOf([] {
                    const auto section = openOrCreate();
                    EXPECT_TRUE(section == nullptr || section->view() != nullptr);
                });
                EXPECT_LT(seconds, 3) << calls;
            });
        if (stepped == Stepped::Unavailable) GTEST_SKIP() << "this process may not trace its children";
        EXPECT_EQ(open(), nullptr) << calls;
        EXPECT_TRUE(isNew(openOrCreate().get())) << calls;
    }
    EXPECT_GT(calls, 20);
}

TEST_F(PosixSection, AnOpenerKilledAtAnySystemCallDoesNoHarm) {
    Stepped stepped = Stepped::Stopped;
    const auto maker = openOrCreate();
    ASSERT_NE(maker, nullptr);
    maker->view()[3] = std::byte{3};
    for (int calls = 0; stepped == Stepped::Stopped; ++calls) {
        stepped = killAfterSystemCalls(
            calls, [] { const auto section = openOrCreate(); },
            [] {
                const auto section = openOrCreate();
                ASSERT_NE(section, nullptr);
                EXPECT_EQ(section->view()[3], std::byte{3});
            });
        if (stepped == Stepped::Unavailable) GTEST_SKIP() << "this process may not trace its children";
    }
}

TEST_F(PosixSection, AMakerStoppedAtWorkHoldsOthersUpForABoundedTimeOnly) {
    Child child([this](const Child::Line& line) {
        const int made = ::open(file().c_str(), O_RDWR | O_CREAT, 0600);
        line.say(lockLifeByte(made, F_WRLCK) ? 'r' : 'x');
        line.await();
        return 0;
    });
    ASSERT_EQ(child.hear(), 'r');
    child.stop();
    EXPECT_LT(secondsOf([] { EXPECT_EQ(openOrCreate(), nullptr); }), 3);
    EXPECT_LT(secondsOf([] { EXPECT_EQ(open(), nullptr); }), 3);
    child.kill();
    EXPECT_TRUE(isNew(openOrCreate().get()));
}

TEST_F(PosixSection, AStoppedHolderHoldsNobodyUp) {
    Child child([](const Child::Line& line) {
        const auto section = openOrCreate();
        line.say('r');
        line.await();
        return 0;
    });
    ASSERT_EQ(child.hear(), 'r');
    child.stop();
    EXPECT_LT(secondsOf([] { EXPECT_TRUE(openOrCreate()->existed()); }), kMakersTime);
    EXPECT_LT(secondsOf([] { EXPECT_NE(open(), nullptr); }), kMakersTime);
}

TEST_F(PosixSection, AForkedChildKeepsItsParentsSection) {
    auto section = openOrCreate();
    ASSERT_NE(section, nullptr);
    section->view()[5] = std::byte{5};
    Child child([](const Child::Line& line) {
        line.await();
        return 0;
    });
    section.reset();
    {
        const auto next = openOrCreate();
        ASSERT_NE(next, nullptr);
        EXPECT_TRUE(next->existed());
        EXPECT_EQ(next->view()[5], std::byte{5});
    }
    child.kill();
    EXPECT_TRUE(isNew(openOrCreate().get()));
}

TEST_F(PosixSection, AForkedChildThatLetsGoLeavesItsParentTheSection) {
    const auto section = std::make_unique<std::unique_ptr<SharedSection>>(openOrCreate());
    Child child([&](const Child::Line&) {
        section->reset();
        return 0;
    });
    EXPECT_EQ(child.finish(), 0);
    EXPECT_TRUE(openOrCreate()->existed());
}

TEST_F(PosixSection, AProgramStartedByAHolderDoesNotHoldIt) {
    auto section = openOrCreate();
    Child child([](const Child::Line& line) {
        line.say('r');
        ::execl("/bin/sleep", "sleep", "30", static_cast<char*>(nullptr));
        return 1;
    });
    ASSERT_EQ(child.hear(), 'r');
    section.reset();
    // The child lets go with its exec, which may come after its word.
    bool renewed = false;
    for (int i = 0; i < 500 && !renewed; ++i) {
        renewed = isNew(openOrCreate().get());
        platform::hostPlatform().sleepMilliseconds(5);
    }
    EXPECT_TRUE(renewed);
}

TEST_F(PosixSection, OfManyWhoComeAtOnceOneMakesIt) {
    for (int round = 0; round < 20; ++round) {
        std::vector<std::unique_ptr<Child>> children;
        for (int i = 0; i < 12; ++i)
            children.push_back(std::make_unique<Child>([](const Child::Line& line) {
                line.await();
                const auto section = openOrCreate();
                const bool usable = section != nullptr && section->view() != nullptr;
                line.say(!usable ? 'x' : section->existed() ? 'o' : 'm');
                line.await();
                return 0;
            }));
        for (const auto& child : children) child->go();
        std::string words;
        for (const auto& child : children) words += child->hear();
        std::ranges::sort(words);
        EXPECT_EQ(words, "m" + std::string(11, 'o'));
    }
}

TEST_F(PosixSection, KillingProcessesAtRandomNeverSpoilsIt) {
    std::mt19937 random(1);
    std::uniform_int_distribution<int> microseconds(0, 400);
    for (int round = 0; round < 200; ++round) {
        std::vector<std::unique_ptr<Child>> children;
        for (int i = 0; i < 3; ++i)
            children.push_back(std::make_unique<Child>([](const Child::Line& line) {
                line.say('s');
                for (;;) {
                    const auto section = openOrCreate();
                    if (section == nullptr || section->view() == nullptr) line.say('x');
                }
                return 0;
            }));
        for (const auto& child : children) EXPECT_EQ(child->hear(), 's');
        ::usleep(static_cast<useconds_t>(microseconds(random)));
        for (const auto& child : children) ::kill(child->id(), SIGKILL);
        for (const auto& child : children) EXPECT_EQ(child->hear(), '\0');
        children.clear();
        EXPECT_TRUE(isNew(openOrCreate().get()));
    }
}

TEST_F(PosixSection, AFileRemovedByHandLeavesItsHoldersAloneWithIt) {
    const auto old = openOrCreate();
    old->view()[0] = std::byte{1};
    fs::remove(file());
    const auto section = openOrCreate();
    EXPECT_TRUE(isNew(section.get()));
    EXPECT_EQ(old->view()[0], std::byte{1});
    EXPECT_TRUE(openOrCreate()->existed());
}

/// Whether a full file system is a failure, asked in a child: its result is 0 for yes, 2 when it can't be tried.
int failsWithoutSpace(const fs::path& folder) {
    Child child([&](const Child::Line&) {
        if (::unshare(CLONE_NEWNS) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return 2;
        if (::mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=128k,mode=700") != 0) return 2;
        const bool fails = openOrCreate() == nullptr && openOrCreate() == nullptr;
        const bool smallOneFits = openOrCreate(u"Small", 4096) != nullptr;
        return fails && smallOneFits ? 0 : 1;
    });
    return child.finish();
}

TEST_F(PosixSection, WithoutSpaceItFailsInsteadOfFaultingLater) {
    const int result = failsWithoutSpace(surroundings_.runtime());
    if (result == 2) GTEST_SKIP() << "this process may not mount a file system";
    EXPECT_EQ(result, 0);
}

/// Where a file system can't take space ahead.
class PosixSectionWithoutFallocate : public PosixSection {
  protected:
    PosixSectionWithoutFallocate() { fallocateError = EOPNOTSUPP; }
    ~PosixSectionWithoutFallocate() override { fallocateError = 0; }
};

TEST_F(PosixSectionWithoutFallocate, ItsSpaceIsTakenAllTheSame) {
    const auto section = openOrCreate();
    EXPECT_TRUE(isNew(section.get()));
    struct stat status {};
    ASSERT_EQ(::stat(file().c_str(), &status), 0);
    EXPECT_EQ(status.st_size, static_cast<off_t>(kBytes));
    EXPECT_GE(status.st_blocks * 512, static_cast<off_t>(kBytes));
}

/// As older kernels do it for a program with a fast timer.
TEST_F(PosixSectionWithoutFallocate, ItsSpaceIsTakenThoughSignalsKeepInterrupting) {
    fallocateError = EINTR;
    Child child([](const Child::Line&) {
        ::alarm(20); // ends who never gets there
        return isNew(openOrCreate().get()) ? 0 : 1;
    });
    EXPECT_EQ(child.finish(), 0);
}

TEST_F(PosixSectionWithoutFallocate, WithoutSpaceItFailsInsteadOfFaultingLater) {
    const int result = failsWithoutSpace(surroundings_.runtime());
    if (result == 2) GTEST_SKIP() << "this process may not mount a file system";
    EXPECT_EQ(result, 0);
}

TEST_F(PosixSectionWithoutFallocate, AFileSizeLimitBelowItsSizeMakesItFailAndEndsNobody) {
    Child limited([](const Child::Line&) {
        const rlimit limit{5000, 5000};
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return 1;
        return openOrCreate() == nullptr ? 0 : 2;
    });
    EXPECT_EQ(limited.finish(), 0);
    EXPECT_FALSE(fs::exists(file())); // gives back what it took
    EXPECT_TRUE(isNew(openOrCreate().get()));
}

TEST_F(PosixSection, NoDescriptorIsLeftOpen) {
    const int before = openFileCount();
    for (int i = 0; i < 20; ++i) {
        const auto one = openOrCreate();
        const auto two = openOrCreate();
        const auto misfit = openOrCreate(kName, 4096);
        EXPECT_NE(open(), nullptr);
    }
    fs::remove(file());
    fs::create_directory(file());
    EXPECT_EQ(openOrCreate(), nullptr);
    EXPECT_EQ(openFileCount(), before);
}

/// Where no runtime folder is the user's own, the file lies in /dev/shm under the user's number.
class PosixSectionInSharedMemoryFolder : public PosixSection {
  protected:
    ~PosixSectionInSharedMemoryFolder() override { fs::remove(sharedFile_); }

    void expectThere(const char* why) {
        const auto section = openOrCreate(name_);
        ASSERT_TRUE(isNew(section.get())) << why;
        EXPECT_EQ(modeOf(sharedFile_), mode_t{S_IFREG | S_IRUSR | S_IWUSR}) << why;
        EXPECT_TRUE(openOrCreate(name_)->existed()) << why;
    }

    std::u16string name_ = u"TallowmereTest_" + surroundings_.top().filename().u16string();
    fs::path sharedFile_ = "/dev/shm/" + fs::path(name_).string() + "." + std::to_string(::geteuid());
};

/// /home is a link on some machines. The folder itself may not be one: PosixSectionInSharedMemoryFolder.
TEST_F(PosixSection, LinksOnTheWayToTheFolderAreFollowed) {
    const fs::path link = surroundings_.top() / "link";
    fs::create_directory_symlink(surroundings_.runtime().parent_path(), link);
    surroundings_.setVariable("XDG_RUNTIME_DIR", link / surroundings_.runtime().filename());
    const auto section = openOrCreate();
    ASSERT_NE(section, nullptr);
    EXPECT_TRUE(fs::exists(file()));
}

TEST_F(PosixSection, TheFoldersPathMayEndInSlashes) {
    for (const char* ending : {"/", "//", "/.", "/./"}) {
        surroundings_.setVariable("XDG_RUNTIME_DIR", surroundings_.runtime().string() + ending);
        const auto section = openOrCreate();
        ASSERT_NE(section, nullptr) << ending;
        EXPECT_TRUE(fs::exists(file())) << ending;
    }
}

TEST_F(PosixSectionInSharedMemoryFolder, WhenTheVariableIsUnsetOrNoAbsolutePath) {
    surroundings_.setVariable("XDG_RUNTIME_DIR", std::nullopt);
    expectThere("unset");
    surroundings_.setVariable("XDG_RUNTIME_DIR", "");
    expectThere("empty");
    surroundings_.setVariable("XDG_RUNTIME_DIR", "run");
    expectThere("relative");
}

TEST_F(PosixSectionInSharedMemoryFolder, WhenTheFolderIsMissingOrNoFolder) {
    surroundings_.setVariable("XDG_RUNTIME_DIR", surroundings_.top() / "missing");
    expectThere("missing");
    writeBytes(surroundings_.top() / "file", "x");
    surroundings_.setVariable("XDG_RUNTIME_DIR", surroundings_.top() / "file");
    expectThere("a file");
    fs::create_directory_symlink(surroundings_.runtime(), surroundings_.top() / "link");
    for (const char* ending : {"", "/", "//", "/.", "/./"}) {
        surroundings_.setVariable("XDG_RUNTIME_DIR", (surroundings_.top() / "link").string() + ending);
        expectThere(("a symbolic link" + std::string(ending)).c_str());
        EXPECT_TRUE(fs::is_empty(surroundings_.runtime())) << ending;
    }
}

TEST_F(PosixSectionInSharedMemoryFolder, WhenOthersMayWriteToTheFolder) {
    for (const mode_t mode : {0770U, 0702U, 0777U}) {
        ASSERT_EQ(::chmod(surroundings_.runtime().c_str(), mode), 0);
        expectThere("writable");
    }
}

} // namespace
} // namespace tallowmere::test

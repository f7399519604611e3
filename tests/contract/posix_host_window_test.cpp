// The host's socket on Linux.
#include "platform/host_window.hpp"
#include "platform/posix/host_message.hpp"
#include "tests/contract/posix_children.hpp"
#include "tests/contract/posix_surroundings.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>

namespace tallowmere::test {
namespace {

namespace fs = std::filesystem;
using platform::HostMessage;

class PosixHostWindow : public testing::Test {
  protected:
    [[nodiscard]] int entries() const {
        return static_cast<int>(std::distance(fs::directory_iterator(surroundings_.runtime()), {}));
    }
    [[nodiscard]] fs::path onlyEntry() const { return fs::directory_iterator(surroundings_.runtime())->path(); }
    [[nodiscard]] static int post(std::uint64_t handle, const HostMessage& message = {0x8019, 8, 0}) {
        return platform::hostPlatform().postToHost(handle, message);
    }
    /// The handle of a window whose process was killed.
    [[nodiscard]] static std::uint64_t deadWindow() {
        int pipe[2];
        if (::pipe(pipe) != 0) return 0;
        Child child([&](const Child::Line& line) {
            const auto window = platform::makeHostWindow();
            const std::uint64_t handle = window->handle();
            if (::write(pipe[1], &handle, sizeof handle) != sizeof handle) return 1;
            line.await();
            return 0;
        });
        std::uint64_t handle = 0;
        EXPECT_EQ(::read(pipe[0], &handle, sizeof handle), static_cast<ssize_t>(sizeof handle));
        ::close(pipe[0]);
        ::close(pipe[1]);
        child.kill();
        return handle;
    }
    static void sendRaw(std::uint64_t handle, const void* bytes, std::size_t size) {
        using namespace platform::posix;
        const RuntimeFolder folder;
        const sockaddr_un address = hostAddress(folder, hostEntry(folder, handle).text());
        const Descriptor socket = makeDatagramSocket();
        EXPECT_EQ(::sendto(socket.get(), bytes, size, 0, reinterpret_cast<const sockaddr*>(&address), sizeof address),
                  static_cast<ssize_t>(size));
    }

    PosixSurroundings surroundings_;
};

TEST_F(PosixHostWindow, ItsSocketIsTheUsersAloneAndGoesWithIt) {
    const mode_t before = ::umask(0);
    auto window = platform::makeHostWindow();
    ::umask(before);
    ASSERT_NE(window, nullptr);
    struct stat status {};
    ASSERT_EQ(::lstat(onlyEntry().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode, mode_t{S_IFSOCK | 0600});
    EXPECT_TRUE(onlyEntry().filename().string().starts_with("tallowmere-host-"));
    window.reset();
    EXPECT_EQ(entries(), 0);
}

TEST_F(PosixHostWindow, DatagramsOfAnotherShapeAreLeftOut) {
    const auto window = platform::makeHostWindow();
    ASSERT_NE(window, nullptr);
    const std::string junk(500, 'x');
    for (const std::size_t size : {0U, 1U, 23U, 24U, 25U, 500U}) sendRaw(window->handle(), junk.data(), size);
    EXPECT_NE(post(window->handle(), {1, 2, 3}), 0);
    EXPECT_EQ(window->poll(), (HostMessage{1, 2, 3}));
    EXPECT_EQ(window->poll(), std::nullopt);
}

TEST_F(PosixHostWindow, AHostThatTakesNothingHoldsNobodyUp) {
    const auto window = platform::makeHostWindow();
    ASSERT_NE(window, nullptr);
    const auto start = std::chrono::steady_clock::now();
    int posted = 0;
    while (posted < 100'000 && post(window->handle()) != 0) ++posted;
    EXPECT_LT(posted, 100'000);
    EXPECT_GT(posted, 0);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    EXPECT_NE(window->poll(), std::nullopt);
    EXPECT_NE(post(window->handle()), 0);
}

TEST_F(PosixHostWindow, APostToADeadHostFailsAndTakesItsSocketAway) {
    const std::uint64_t dead = deadWindow();
    EXPECT_EQ(entries(), 1);
    EXPECT_EQ(post(dead), 0);
    EXPECT_EQ(entries(), 0);
}

TEST_F(PosixHostWindow, ANewWindowTakesTheSocketsOfDeadOnesAway) {
    const auto living = platform::makeHostWindow();
    static_cast<void>(deadWindow());
    static_cast<void>(deadWindow());
    writeBytes(surroundings_.runtime() / "tallowmere-host-file", "x");
    const auto window = platform::makeHostWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(entries(), 3);
    EXPECT_NE(post(living->handle()), 0);
}

TEST_F(PosixHostWindow, ObjectsOfAnotherKindUnderItsNameAreNoHost) {
    fs::path path;
    std::uint64_t handle = 0;
    {
        const auto window = platform::makeHostWindow();
        path = onlyEntry();
        handle = window->handle();
    }
    writeBytes(path, "x");
    EXPECT_EQ(post(handle), 0);
    EXPECT_EQ(readBytes(path), "x");
    fs::remove(path);
    const auto other = platform::makeHostWindow();
    fs::create_symlink(onlyEntry(), path);
    EXPECT_EQ(post(handle), 0);
    EXPECT_EQ(other->poll(), std::nullopt);
}

TEST_F(PosixHostWindow, AFolderWithALongPathWillDo) {
    fs::path folder = surroundings_.top();
    for (int i = 0; i < 5; ++i) folder /= std::string(60, 'd');
    fs::create_directories(folder);
    surroundings_.setVariable("XDG_RUNTIME_DIR", folder);
    const auto window = platform::makeHostWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_NE(post(window->handle()), 0);
    EXPECT_NE(window->poll(), std::nullopt);
}

TEST_F(PosixHostWindow, WithoutARuntimeFolderItLiesInTheSharedMemoryFolder) {
    surroundings_.setVariable("XDG_RUNTIME_DIR", std::nullopt);
    const auto window = platform::makeHostWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_NE(post(window->handle()), 0);
    EXPECT_NE(window->poll(), std::nullopt);
}

TEST_F(PosixHostWindow, NoDescriptorIsLeftOpen) {
    const int before = openFileCount();
    for (int i = 0; i < 5; ++i) EXPECT_NE(post(platform::makeHostWindow()->handle()) + 1, 0);
    EXPECT_EQ(openFileCount(), before);
}

} // namespace
} // namespace tallowmere::test

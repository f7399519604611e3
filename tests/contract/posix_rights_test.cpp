// Two users on one machine: neither reads, writes nor plants what is the other's.
#include "core/ccore.hpp"
#include "platform/host_window.hpp"
#include "settings/data_folders.hpp"
#include "tests/contract/posix_children.hpp"
#include "tests/contract/posix_surroundings.hpp"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <grp.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace tallowmere::test {
namespace {

namespace fs = std::filesystem;

constexpr uid_t kOwner = 54321;
constexpr uid_t kStranger = 54322;
constexpr std::size_t kBytes = 253'336;
constexpr char16_t kKey[] = u"Software\\Tallowmere\\core";
const std::string kText = "[HKCU\\Software\\Tallowmere\\core]\r\n\"Number\"=dword:00000001\r\n";

bool isRefused(const fs::path& path) {
    for (const int flags : {O_RDONLY, O_WRONLY, O_RDWR})
        if (::open(path.c_str(), flags) >= 0 || errno != EACCES) return false;
    return true;
}

class PosixRights : public testing::Test {
  protected:
    void SetUp() override {
        if (::geteuid() != 0) GTEST_SKIP() << "takes two users, so root";
    }
    ~PosixRights() override { fs::remove(shared()); }

    [[nodiscard]] std::u16string name() const {
        return u"TallowmereRights_" + surroundings_.top().filename().u16string();
    }
    /// The owner's section where there is no runtime folder.
    [[nodiscard]] fs::path shared() const {
        return "/dev/shm/" + fs::path(name()).string() + "." + std::to_string(kOwner);
    }

    platform::Platform& platform_ = platform::hostPlatform();
    PosixSurroundings surroundings_;
};

/// Even with every folder above open to all, the files themselves are closed.
TEST_F(PosixRights, AStrangerOpensNeitherSectionNorSettingsNorTheHostsSocket) {
    surroundings_.giveTo(kOwner);
    for (const fs::path& folder : {surroundings_.top(), surroundings_.runtime(), surroundings_.config()})
        ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
    Child owner([&](const Child::Line& line) {
        if (::setgid(kOwner) != 0 || ::setuid(kOwner) != 0) return 1;
        ::umask(0);
        const auto section = platform_.openOrCreateSection(u"Section", kBytes);
        const auto key = platform_.createSettings(kKey);
        const auto window = platform::makeHostWindow();
        line.say(section && key && window ? 'r' : 'x');
        line.await();
        return 0;
    });
    ASSERT_EQ(owner.hear(), 'r');
    ASSERT_EQ(::chmod((surroundings_.config() / "tallowmere").c_str(), 0755), 0);
    fs::path socketPath;
    for (const fs::path& entry : fs::directory_iterator(surroundings_.runtime()))
        if (entry.filename() != "Section") socketPath = entry;
    EXPECT_EQ(runAs(kStranger,
                    [&] {
                        if (!isRefused(surroundings_.runtime() / "Section")) return 1;
                        if (!isRefused(surroundings_.settingsFile())) return 2;
                        if (!isRefused(surroundings_.settingsFile().string() + ".lock"))
                            return 5; // else: writers held up
                        sockaddr_un address{};
                        address.sun_family = AF_UNIX;
                        std::ranges::copy(socketPath.string(), std::begin(address.sun_path));
                        const int socket = ::socket(AF_UNIX, SOCK_DGRAM, 0);
                        if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
                            return 3;
                        return errno == EACCES ? 0 : 4;
                    }),
              0);
}

/// A stranger in the owner's surroundings gets a section of their own and no settings.
TEST_F(PosixRights, AStrangerInTheOwnersFoldersGetsNothingOfTheirs) {
    surroundings_.writeSettings(kText);
    const auto ownersSection = platform_.openOrCreateSection(name(), kBytes);
    ASSERT_NE(ownersSection, nullptr);
    for (const fs::path& folder :
         {surroundings_.top(), surroundings_.runtime(), surroundings_.config(), surroundings_.config() / "tallowmere"})
        ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
    ASSERT_EQ(::chmod(surroundings_.settingsFile().c_str(), 0644), 0);
    EXPECT_EQ(runAs(kOwner,
                    [&] {
                        const auto section = platform_.openOrCreateSection(name(), kBytes);
                        if (section == nullptr || section->existed() || !fs::exists(shared())) return 1;
                        if (platform_.openSettings(kKey) || platform_.createSettings(kKey)) return 2;
                        return 0;
                    }),
              0);
}

/// Everybody may write to that folder; what keeps the section is its mode and the folder's sticky bit.
TEST_F(PosixRights, AStrangerNeitherOpensNorMovesNorRemovesASectionInTheSharedMemoryFolder) {
    surroundings_.setVariable("XDG_RUNTIME_DIR", std::nullopt);
    Child owner([&](const Child::Line& line) {
        if (::setgid(kOwner) != 0 || ::setuid(kOwner) != 0) return 1;
        ::umask(0);
        const auto section = platform_.openOrCreateSection(name(), kBytes);
        line.say(section ? 'r' : 'x');
        line.await();
        return 0;
    });
    ASSERT_EQ(owner.hear(), 'r');
    EXPECT_EQ(runAs(kStranger,
                    [&] {
                        const std::string elsewhere = shared().string() + ".moved";
                        if (!isRefused(shared())) return 1;
                        if (::unlink(shared().c_str()) == 0) return 2;
                        if (::rename(shared().c_str(), elsewhere.c_str()) == 0) return 3;
                        if (::chmod(shared().c_str(), 0666) == 0) return 4;
                        // Under the stranger's own number lies the stranger's own section.
                        const auto section = platform_.openOrCreateSection(name(), kBytes);
                        return section != nullptr && !section->existed() ? 0 : 5;
                    }),
              0);
    fs::remove("/dev/shm/" + fs::path(name()).string() + "." + std::to_string(kStranger));
}

/// However open the owner's mask is, what the library makes takes nothing from others.
TEST_F(PosixRights, AStrangerPlantsNothingInWhatTheLibraryMade) {
    surroundings_.giveTo(kOwner);
    const auto makeAll = [&] {
        ::umask(0);
        return platform_.createSettings(kKey) && platform_.openOrCreateSection(u"Section", kBytes) ? 0 : 1;
    };
    ASSERT_EQ(runAs(kOwner, makeAll), 0);
    for (const fs::path& folder : {surroundings_.top(), surroundings_.runtime(), surroundings_.config()})
        ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);
    EXPECT_EQ(
        runAs(kStranger,
              [&] {
                  int planted = 0;
                  for (const fs::path& folder : {surroundings_.runtime(), surroundings_.settingsFile().parent_path()}) {
                      if (::open((folder / "planted").c_str(), O_CREAT | O_WRONLY, 0600) >= 0) ++planted;
                      if (::symlink("/etc/passwd", (folder / "link").c_str()) == 0) ++planted;
                  }
                  return planted;
              }),
        0);
    EXPECT_EQ(runAs(kStranger, [&] { return platform_.createSettings(kKey) ? 1 : 0; }), 0);
}

/// Nor a member of the owner's group, with the mask that many systems have.
TEST_F(PosixRights, AStrangerPlantsNothingInTheDataFolderThatTheLibraryMade) {
    surroundings_.giveTo(kOwner);
    const fs::path folder = surroundings_.data() / "Tallowmere";
    const std::vector<fs::path> folders{folder, folder / "config", folder / "database", folder / "log_system"};
    for (const mode_t mask : {0U, 002U}) {
        EXPECT_EQ(runAs(kOwner,
                        [&] {
                            ::umask(mask);
                            const CCore core(platform_, false);
                            const std::u16string log = GetDataFolder(core.context(), u"log_system") + u"/log";
                            return core.area() != nullptr && platform_.appendLine(log, "x") ? 0 : 1;
                        }),
                  0);
        for (const fs::path& each : folders) ASSERT_TRUE(fs::is_directory(each)) << each;
        for (const fs::path& each : {surroundings_.top(), surroundings_.data()})
            ASSERT_EQ(::chmod(each.c_str(), 0755), 0);
        Child member([&](const Child::Line&) {
            if (::setgroups(0, nullptr) != 0 || ::setgid(kOwner) != 0 || ::setuid(kStranger) != 0) return 96;
            int planted = 0;
            for (const fs::path& each : folders) {
                if (::open((each / "planted").c_str(), O_CREAT | O_WRONLY, 0600) >= 0) ++planted;
                if (::symlink("/etc/passwd", (each / "link").c_str()) == 0) ++planted;
            }
            return planted + (isRefused(folder / "log_system" / "log") ? 0 : 1);
        });
        EXPECT_EQ(member.finish(), 0) << mask;
        fs::remove_all(folder);
    }
}

TEST_F(PosixRights, APlantedSectionIsRefused) {
    surroundings_.setVariable("XDG_RUNTIME_DIR", std::nullopt);
    writeBytes(shared(), std::string(kBytes, 'x'));
    ASSERT_EQ(::chmod(shared().c_str(), 0666), 0);
    ASSERT_EQ(::chown(shared().c_str(), kStranger, kStranger), 0);
    const auto triesAsOwner = [&] {
        return platform_.openOrCreateSection(name(), kBytes) || platform_.openSection(name(), kBytes) ? 1 : 0;
    };
    EXPECT_EQ(runAs(kOwner, triesAsOwner), 0);
    EXPECT_EQ(readBytes(shared()), std::string(kBytes, 'x'));
    fs::remove(shared());
    fs::create_symlink(surroundings_.top() / "planted", shared());
    ASSERT_EQ(::lchown(shared().c_str(), kStranger, kStranger), 0);
    EXPECT_EQ(runAs(kOwner, triesAsOwner), 0);
    EXPECT_FALSE(fs::exists(surroundings_.top() / "planted"));
}

TEST_F(PosixRights, PlantedSettingsAreNotTaken) {
    surroundings_.writeSettings(kText);
    surroundings_.giveTo(kOwner);
    const auto takesSettings = [&] { return platform_.openSettings(kKey) || platform_.createSettings(kKey) ? 1 : 0; };
    EXPECT_EQ(runAs(kOwner, takesSettings), 1);
    ASSERT_EQ(::chown(surroundings_.settingsFile().c_str(), kStranger, kStranger), 0);
    EXPECT_EQ(runAs(kOwner, takesSettings), 0);
    ASSERT_EQ(::chown(surroundings_.settingsFile().c_str(), kOwner, kOwner), 0);
    ASSERT_EQ(::chown((surroundings_.config() / "tallowmere").c_str(), kStranger, kStranger), 0);
    ASSERT_EQ(::chmod((surroundings_.config() / "tallowmere").c_str(), 0777), 0);
    EXPECT_EQ(runAs(kOwner, takesSettings), 0);
    EXPECT_EQ(surroundings_.readSettings(), kText);
}

TEST_F(PosixRights, AStrangersSocketIsNoHost) {
    const auto window = platform::makeHostWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_NE(platform_.postToHost(window->handle(), {1, 2, 3}), 0);
    const fs::path socket = fs::directory_iterator(surroundings_.runtime())->path();
    ASSERT_EQ(::lchown(socket.c_str(), kStranger, kStranger), 0);
    EXPECT_EQ(platform_.postToHost(window->handle(), {1, 2, 3}), 0);
}

} // namespace
} // namespace tallowmere::test

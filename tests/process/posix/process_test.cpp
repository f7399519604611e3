// Several programs, each with the shared library loaded, on one section of their own.
#include "core/ccore.hpp"
#include "core/channels/section_access.hpp"
#include "platform/host_window.hpp"
#include "tests/process/posix/client_process.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace tallowmere::test {
namespace {

namespace fs = std::filesystem;

class Processes : public testing::Test {
  protected:
    void SetUp() override {
        ::umask(022); // settings that the group may write to would not be taken
        std::string pattern = (fs::temp_directory_path() / "tallowmere-process-XXXXXX").string();
        folder_ = ::mkdtemp(pattern.data());
        for (const char* name : {"XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
            ::setenv(name, folder_.c_str(), 1);
    }
    void TearDown() override { fs::remove_all(folder_); }

    void writeSettings(const std::string& values) const {
        fs::create_directories(folder_ / "tallowmere");
        std::ofstream(folder_ / "tallowmere" / "registry.reg")
            << "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\Tallowmere\\core]\n"
            << values;
    }
    void writeConfigFile(const std::string& name, const std::string& text) const {
        fs::create_directories(folder_ / "Tallowmere" / "config");
        std::ofstream(folder_ / "Tallowmere" / "config" / name) << text;
    }

    fs::path folder_;
};

TEST_F(Processes, WhatOneWritesTheOtherReadsAtOnce) {
    ClientProcess writer;
    ClientProcess reader;
    EXPECT_EQ(reader.ask("get 1 0"), "none");
    EXPECT_EQ(writer.ask("set 1 6.4 0"), "1");
    EXPECT_EQ(reader.ask("get 1 0"), "6.4000000000000004");
    EXPECT_EQ(reader.ask("set 1 7.25 0"), "1");
    EXPECT_EQ(writer.ask("get 1 0"), "7.25");
}

TEST_F(Processes, ANameSetByOneIsSeenByTheOther) {
    ClientProcess one;
    ClientProcess other;
    EXPECT_EQ(one.ask("rename 3 Vane"), "done");
    EXPECT_EQ(other.ask("name 175"), "Vane");
}

TEST_F(Processes, TheCreatorReadsSettingsAndFilesAndAnOpenerDoesNot) {
    writeConfigFile("channels.xml", R"(<channels><channel id="172" user="First"/></channels>)");
    ClientProcess creator;
    EXPECT_EQ(creator.ask("name 172"), "First");
    writeConfigFile("channels.xml", R"(<channels><channel id="172" user="Second"/></channels>)");
    ClientProcess opener;
    EXPECT_EQ(opener.ask("name 172"), "First");
}

TEST_F(Processes, AfterTheLastOneIsGoneTheNextMakesTheSectionAnew) {
    writeConfigFile("channels.xml", R"(<channels><channel id="172" user="First"/></channels>)");
    {
        ClientProcess one;
        ClientProcess two;
        EXPECT_EQ(one.ask("set 1 6.4 0"), "1");
        EXPECT_EQ(one.finish(), 0);
        EXPECT_EQ(two.ask("get 1 0"), "6.4000000000000004");
        EXPECT_EQ(two.finish(), 0);
    }
    writeConfigFile("channels.xml", R"(<channels><channel id="172" user="Second"/></channels>)");
    ClientProcess next;
    EXPECT_EQ(next.ask("get 1 0"), "none");
    EXPECT_EQ(next.ask("name 172"), "Second");
}

TEST_F(Processes, TheSectionOutlivesAKilledCreatorWhileAnotherHoldsIt) {
    ClientProcess creator;
    EXPECT_EQ(creator.ask("set 1 6.4 0"), "1");
    ClientProcess opener;
    creator.kill();
    EXPECT_EQ(opener.ask("get 1 0"), "6.4000000000000004");
    ClientProcess third;
    EXPECT_EQ(third.ask("get 1 0"), "6.4000000000000004");
}

TEST_F(Processes, AfterAKilledLastOneTheNextMakesTheSectionAnew) {
    ClientProcess lone;
    EXPECT_EQ(lone.ask("set 1 6.4 0"), "1");
    lone.kill();
    ClientProcess next;
    EXPECT_EQ(next.ask("get 1 0"), "none");
    EXPECT_EQ(next.ask("set 1 5.5 0"), "1");
}

TEST_F(Processes, TheSectionFileHasTheSectionsNameAndSizeAndIsTheUsersAlone) {
    ClientProcess client;
    const fs::path file = folder_ / "ZanCore_363_253336";
    EXPECT_EQ(fs::file_size(file), 253336U);
    EXPECT_EQ(fs::status(file).permissions() & fs::perms::mask, fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(Processes, SettingsCarriedOverFromWindowsAreRead) {
    writeSettings("\"Sys_v3\"=hex:00,00,00,00,00,00,04,40\n\"Sys_i6\"=dword:00000003\n\"Sys_b5\"=dword:00000007\n");
    ClientProcess client;
    EXPECT_EQ(client.ask("set 48 51.5 0"), "1");
    EXPECT_EQ(client.ask("get 48 0"), "51.5") << "system integer 6 is 3, so a fix is accepted";
    const CCore opener(false);
    EXPECT_EQ(opener.system().variable(3), 2.5);
    EXPECT_EQ(opener.system().flag(5), 1);
}

TEST_F(Processes, AManOverboardCallReachesTheHostsWindow) {
    CCore host(false);
    const auto window = platform::makeHostWindow();
    ASSERT_NE(window, nullptr);
    ClientProcess client;
    EXPECT_EQ(client.ask("mob 50.5 -1.25"), "0") << "no host yet";
    writeOnce(host.area()->hostWindow, window->handle());
    EXPECT_NE(client.ask("mob 50.5 -1.25"), "0");
    std::optional<platform::HostMessage> message;
    for (int i = 0; i < 200 && !(message = window->poll()); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    ASSERT_TRUE(message);
    EXPECT_EQ(*message, (platform::HostMessage{0x8019, 8, 0}));
    EXPECT_EQ(host.area()->mob.latitude, 50.5);
    EXPECT_EQ(host.area()->mob.longitude, -1.25);
}

/// Without a section the log goes to the root folder, which only root may write. Gone again afterwards.
class RootLog {
  public:
    RootLog() : before_(logs()) {}
    ~RootLog() {
        for (const fs::path& log : logs())
            if (!before_.contains(log)) fs::remove(log);
    }
    RootLog(const RootLog&) = delete;
    RootLog& operator=(const RootLog&) = delete;

  private:
    static std::set<fs::path> logs() {
        std::set<fs::path> found;
        for (const auto& entry : fs::directory_iterator("/"))
            if (entry.path().filename().string().starts_with("log_system_")) found.insert(entry.path());
        return found;
    }
    std::set<fs::path> before_;
};

TEST_F(Processes, AnObjectOfAnotherKindUnderTheSectionsNameLeavesClientsWithoutData) {
    const RootLog log;
    fs::create_directory(folder_ / "ZanCore_363_253336");
    ClientProcess client;
    EXPECT_EQ(client.ask("set 1 6.4 0"), "0");
    EXPECT_EQ(client.ask("set 48 51.5 0"), "1") << "a protected channel still answers 1";
    EXPECT_EQ(client.ask("get 1 0"), "none");
    EXPECT_EQ(client.ask("name 1"), "BSP");
    EXPECT_EQ(client.finish(), 0);
}

TEST_F(Processes, TwentyClientsStartedAtOnceShareOneSection) {
    std::vector<std::unique_ptr<ClientProcess>> clients;
    for (int i = 0; i < 20; ++i) clients.push_back(std::make_unique<ClientProcess>());
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(clients[static_cast<std::size_t>(i)]->ask("set " + std::to_string(172 + i) + " " + std::to_string(i) +
                                                            " 0"),
                  "1");
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(clients[static_cast<std::size_t>(19 - i)]->ask("get " + std::to_string(172 + i) + " 0"),
                  std::to_string(i));
}

} // namespace
} // namespace tallowmere::test

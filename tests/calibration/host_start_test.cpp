// A host with the start flag and a plain client beside it on the real system: real settings, files and section.
// Runs only on a machine of its own, which the build names: elsewhere these would be the user's.
#include "core/ccore.hpp"
#include "settings/data_folders.hpp"
#include "settings/reg_ex.hpp"
#include "tests/support/temporary_folder.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace tallowmere::test {
namespace {

class HostStart : public ::testing::Test {
  protected:
    void SetUp() override {
        if (std::getenv("TALLOWMERE_TEST_MACHINE") == nullptr) GTEST_SKIP() << "not on a machine of its own";
        for (const char* name : {"XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME"}) {
            const char* const folder = std::getenv(name);
            if (folder == nullptr) continue;
            std::filesystem::create_directories(folder);
            std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
        }
        std::filesystem::create_directory(home_);
    }
    void TearDown() override {
        CRegEx core(system_);
        core.Open(kCoreKey);
        core.writeString(u"DataFolder", u"");
        core.writeDword(u"Sys_b26", 0);
        CRegEx calibration(system_);
        calibration.Open(kCalibrationKey);
        for (const char16_t* name : {u"CalUse_2", u"CalUse_8", u"CalLinear_2"}) calibration.writeDword(name, 0);
    }
    void writeFile(const std::filesystem::path& path, std::string_view text) const {
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
        ASSERT_TRUE(std::filesystem::exists(path));
    }
    static double stored(CCore& core, ChannelIndex channel, double value) {
        EXPECT_TRUE(core.values().store(channel, Record::ofNumber(value), 0, kNoTime));
        return core.values().fetch(channel, 0).record.number();
    }

    platform::Platform& system_ = platform::hostPlatform();
    TemporaryFolder folder_;
    std::filesystem::path home_ = folder_.path() / "with a space";
};

TEST_F(HostStart, CalibratesAndBlocksFromRealSettingsAndFilesBesideAPlainClient) {
    CRegEx core(system_);
    core.Create(kCoreKey);
    core.writeString(u"DataFolder", home_.u16string());
    core.writeDword(u"Sys_b26", 1);
    CRegEx settings(system_);
    settings.Create(kCalibrationKey);
    settings.writeDword(u"CalUse_2", 1);
    settings.writeDword(u"CalLinear_2", 1);
    settings.writeDword(u"CalUse_8", 1);
    settings.writeString(u"CalFile_8", (home_ / "own heading.txt").u16string());
    writeFile(home_ / "calibration" / "ZAN_CAL_Bsp.txt", "Speed\r\n0,5,10\r\n0,0.5,1,2\r\n20,1,2,4\r\n");
    writeFile(home_ / "own heading.txt", "0\n0 3");

    CCore plain(false);
    ASSERT_TRUE(plain.madeSection());
    CCore host(true);
    ASSERT_NE(host.area(), nullptr);
    EXPECT_FALSE(host.madeSection());

    EXPECT_EQ(host.area()->settings[ZAN_TWA].blocked, 1);
    EXPECT_FALSE(host.values().store(ZAN_TWA, Record::ofNumber(30.0), 0, kNoTime));
    EXPECT_EQ(stored(host, ZAN_HDG, 359.0), 2.0);
    EXPECT_EQ(stored(host, ZAN_HEEL, 10.0), 10.0);
    EXPECT_EQ(stored(host, ZAN_BSP, 7.5), 7.5 + 2.25); // between 1.5 and 3 by heel
    EXPECT_EQ(plain.values().fetch(ZAN_BSP, 0).record.number(), 9.75);
    EXPECT_EQ(stored(plain, ZAN_BSP, 7.5), 7.5); // a client corrects nothing
    EXPECT_EQ(stored(plain, ZAN_BSP, -0.5), 0.0);
    EXPECT_EQ(stored(plain, ZAN_HDG, 720.0), 0.0);
    EXPECT_EQ(stored(plain, ZAN_TWD, 720.0), 360.0); // not calibrated

    CRegEx after(system_);
    after.Open(kCoreKey);
    const std::u16string location = after.QueryString(u"Location", u"absent");
    EXPECT_TRUE(location == GetHostFolder(system_));
    ASSERT_FALSE(location.empty());
    EXPECT_EQ(location.back(), system_.separator());
}

} // namespace
} // namespace tallowmere::test

// The real program, killed while it plays. This process holds the section.
#include "core/ccore.hpp"
#include "core/channels/replay_sign.hpp"
#include "tests/tools/record/posix/child.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace tallowmere::test {
namespace {

class KilledPlayer : public ::testing::Test {
  protected:
    KilledPlayer() {
        std::ofstream(file_) << "time,boat,channel,name,unit,class,kind,value\n"
                                "2025-11-21T12:00:00Z,0,1,BSP,kt,12,double,6.4\n"
                                "2025-11-21T12:50:00Z,0,1,BSP,kt,12,double,6.5\n";
    }
    ~KilledPlayer() override { std::filesystem::remove(file_); }

    [[nodiscard]] bool isPlaying() {
        return isReplay(core_.area()) && core_.values().fetch(ZAN_BSP, 0).record.number() == 6.4;
    }
    [[nodiscard]] bool waitUntilPlaying() {
        for (int step = 0; step < 6000 && !isPlaying(); ++step) platform::hostPlatform().sleepMilliseconds(10);
        return isPlaying();
    }

    const std::string file_ = "killed_player_test.csv";
    CCore core_{false};
};

TEST_F(KilledPlayer, IsNotTakenForOneThatStillPlays) {
    ASSERT_NE(core_.area(), nullptr);
    Child first({"play", file_});
    ASSERT_TRUE(waitUntilPlaying());
    EXPECT_EQ(Child({"play", file_, "--speed", "0"}).wait(), 1) << "the first still plays";
    EXPECT_TRUE(isPlaying());
    EXPECT_EQ(first.end(SIGKILL), 128 + SIGKILL);
    EXPECT_TRUE(isPlaying()) << "what it left";
    EXPECT_EQ(Child({"play", file_, "--speed", "0"}).wait(), 0);
    EXPECT_FALSE(isReplay(core_.area()));
    EXPECT_FALSE(core_.values().fetch(ZAN_BSP, 0).record.holdsNumber());
}

} // namespace
} // namespace tallowmere::test

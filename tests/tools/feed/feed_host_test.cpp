#include "core/channels/mob_mark.hpp"
#include "core/channels/replay_sign.hpp"
#include "settings/reg_ex.hpp"
#include "tests/support/memory_platform.hpp"
#include "tools/feed/feed.hpp"
#include "tools/feed/feed_host.hpp"

#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <vector>

namespace tallowmere::feed {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Host : public testing::Test {
  protected:
    std::unique_ptr<FeedHost> makeHost() {
        return std::make_unique<FeedHost>(platform, machine.makeWindow(),
                                          [this](std::string_view text) { told.emplace_back(text); });
    }

    test::MemoryMachine machine;
    test::MemoryPlatform platform{machine};
    std::vector<std::string> told;
};

TEST_F(Host, AcceptsSatelliteFixesOfClients) {
    const auto host = makeHost();
    ASSERT_TRUE(host->ready());
    EXPECT_EQ(host->core().system().integer(system_integer::kFixMode), 3);
    EXPECT_TRUE(host->core().system().inMode(3, 0));
}

TEST_F(Host, LeavesItsWindowInTheSectionAndTakesItBack) {
    const CCore other(platform, false); // keeps the section alive
    auto host = makeHost();
    EXPECT_NE(other.area()->hostWindow, 0U);
    host.reset();
    EXPECT_EQ(other.area()->hostWindow, 0U);
}

TEST_F(Host, AnotherHostsWindowStays) {
    const CCore other(platform, false);
    auto host = makeHost();
    other.area()->hostWindow = 4711;
    host.reset();
    EXPECT_EQ(other.area()->hostWindow, 4711U);
}

TEST_F(Host, AfterAnotherHostHasEndedItIsReachedAgain) {
    const CCore other(platform, false);
    const auto first = makeHost();
    const std::uint64_t window = other.area()->hostWindow;
    auto second = makeHost();
    ASSERT_NE(other.area()->hostWindow, window);
    first->poll();
    EXPECT_NE(other.area()->hostWindow, window) << "a living host keeps its place";
    second.reset();
    first->poll();
    EXPECT_EQ(other.area()->hostWindow, window);
    EXPECT_NE(raiseManOverboard(other.context(), 50.5, -1.25), 0);
    first->poll();
    EXPECT_THAT(told, ElementsAre("MAN OVERBOARD at 50 30.000 N, 1 15.000 W"));
}

TEST_F(Host, ManOverboardOfAnotherProgramIsTold) {
    const CCore other(platform, false);
    const auto host = makeHost();
    host->poll();
    EXPECT_THAT(told, IsEmpty());
    EXPECT_NE(raiseManOverboard(other.context(), 50.5, -1.25), 0);
    host->poll();
    EXPECT_THAT(told, ElementsAre("MAN OVERBOARD at 50 30.000 N, 1 15.000 W"));
}

TEST_F(Host, TwoCallsAreToldTwice) {
    const CCore other(platform, false);
    const auto host = makeHost();
    EXPECT_NE(raiseManOverboard(other.context(), 50.5, -1.25), 0);
    EXPECT_NE(raiseManOverboard(other.context(), -33.99999999, 151.0), 0);
    host->poll();
    EXPECT_THAT(
        told, ElementsAre("MAN OVERBOARD at 34 00.000 S, 151 00.000 E", "MAN OVERBOARD at 34 00.000 S, 151 00.000 E"));
}

TEST_F(Host, UnknownPositionIsSaid) {
    const CCore other(platform, false);
    const auto host = makeHost();
    for (const double latitude : {NO_VALUE, std::numeric_limits<double>::quiet_NaN(), 1e308}) {
        told.clear();
        EXPECT_NE(raiseManOverboard(other.context(), latitude, 0.0), 0);
        host->poll();
        EXPECT_THAT(told, ElementsAre("MAN OVERBOARD, position not known"));
    }
}

class CalibratedHost : public Host {
  protected:
    /// The wind angle that a feed leaves in the section for an apparent wind of 30 degrees and 10 knots.
    double fedWindAngle(FeedHost::Values values) {
        FeedHost host(
            platform, nullptr, [](std::string_view) {}, values);
        Feed feed(host.sink());
        feed.take({"$WIMWV,30.0,R,10.0,N,A*21"});
        const ValueStore& store = host.core().values();
        return store.recordAsDouble(ZAN_AWA, store.fetch(ZAN_AWA, 0).record).value;
    }
    void calibrateWindAngle() {
        machine.addFile(u"C:\\ProgramData\\Tallowmere\\calibration\\ZAN_CAL_Awa.txt", "90\n0 2\n");
        machine.addDword(kCalibrationKey, u"CalUse_5", 1);
    }
};

TEST_F(CalibratedHost, AFedValueIsStoredCorrected) {
    calibrateWindAngle();
    EXPECT_EQ(fedWindAngle(FeedHost::Values::Calibrated), 32.0);
}

TEST_F(CalibratedHost, ARawFeedStoresItAsItCame) {
    calibrateWindAngle();
    EXPECT_EQ(fedWindAngle(FeedHost::Values::Raw), 30.0);
}

TEST_F(Host, OtherMessagesAreIgnored) {
    const auto host = makeHost();
    const std::uint64_t window = host->core().area()->hostWindow;
    for (const platform::HostMessage& message :
         {platform::HostMessage{0x8019, 7, 0}, platform::HostMessage{0x8018, 8, 0}, platform::HostMessage{}})
        EXPECT_NE(platform.postToHost(window, message), 0);
    host->poll();
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(Host, WithoutAWindowItFeedsAllTheSame) {
    FeedHost host(platform, nullptr, [](std::string_view) {});
    ASSERT_TRUE(host.ready());
    host.poll();
    EXPECT_EQ(host.core().area()->hostWindow, 0U);
    EXPECT_TRUE(host.sink().write(ZAN_BSP, 6.4, 0));
}

TEST_F(Host, WhatAKilledPlayerLeftIsTakenOutAndTold) {
    CCore other(platform, false);
    other.values().storeDouble(ZAN_BSP, 6.4, 0);
    other.values().storeDouble(ZAN_TMTOGUN, 0.5, 0);
    other.values().storeDouble(ZAN_SAIL, 3, 1);
    other.values().storeDouble(ZAN_SOG, 5.0, 99);
    writeText(other.area()->boats[0].name, u"[REPLAY] Falcon");
    const Record untouched = loadRecord(other.area()->fullBlocks[1].current[ZAN_BSP]); // boat 1 begins as zeros
    const auto host = makeHost();
    EXPECT_EQ(readText(other.area()->boats[0].name), u"Falcon");
    for (const auto& [channel, boat] :
         {std::pair(ZAN_BSP, 0), std::pair(ZAN_TMTOGUN, 0), std::pair(ZAN_SAIL, 1), std::pair(ZAN_SOG, 99)})
        EXPECT_FALSE(other.values().fetch(static_cast<ChannelIndex>(channel), static_cast<BoatIndex>(boat)).holdsValue)
            << channel;
    EXPECT_EQ(loadRecord(other.area()->fullBlocks[1].current[ZAN_BSP]), untouched);
    EXPECT_NE(other.values().fetch(ZAN_TIME, 0).record.ticks(), kNoTime) << "the clock goes on";
    EXPECT_THAT(told, ElementsAre(testing::HasSubstr("REPLAY")));
}

TEST_F(Host, LiveValuesAndTheBoatsNameStay) {
    CCore other(platform, false);
    other.values().storeDouble(ZAN_BSP, 6.4, 0);
    writeText(other.area()->boats[0].name, u"Falcon [REPLAY]");
    const auto host = makeHost();
    EXPECT_TRUE(other.values().fetch(ZAN_BSP, 0).holdsValue);
    EXPECT_EQ(readText(other.area()->boats[0].name), u"Falcon [REPLAY]");
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(Host, WithoutASectionItIsNotReady) {
    machine.failAlways(test::Step::CreateSection);
    const auto host = makeHost();
    EXPECT_FALSE(host->ready());
    host->poll();
    EXPECT_FALSE(host->sink().write(ZAN_BSP, 6.4, 0));
}

} // namespace
} // namespace tallowmere::feed

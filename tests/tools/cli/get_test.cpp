#include "tests/tools/cli/command_fixture.hpp"

#include <gmock/gmock.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace tallowmere::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class Get : public CommandTest {};

TEST_F(Get, ShowsNameValueUnitAndAge) {
    store(ZAN_BSP, 6.4);
    passSeconds(2.5);
    const CommandRun result = run({"get", "BSP"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.out, "BSP  6.40  kt  2.5 s\n");
    EXPECT_THAT(result.err, IsEmpty());
}

TEST_F(Get, ShowsEachChannelInTheOrderGiven) {
    store(ZAN_BSP, 6.4);
    const CommandRun result = run({"get", "17", "bsp"});
    EXPECT_EQ(result.out, "Depth     -  m       -\n"
                          "BSP    6.40  kt  0.0 s\n");
}

TEST_F(Get, ReadsTheBoatAskedFor) {
    store(ZAN_BSP, 6.4);
    store(ZAN_BSP, 7.5, 3);
    EXPECT_THAT(run({"get", "BSP", "--boat", "3"}).out, HasSubstr("7.50"));
    EXPECT_THAT(run({"get", "--boat", "1", "BSP"}).out, HasSubstr("0  kt")); // its records begin as zeros
    EXPECT_THAT(run({"get", "RudderFwd", "--boat", "3"}).out, HasSubstr("-"));
}

TEST_F(Get, TakesAgesOfCompactBoatsFromTheirOwnStamps) {
    store(ZAN_BSP, 7.5, 99);
    passSeconds(30);
    store(ZAN_BSP, 6.4, 0);
    EXPECT_EQ(run({"get", "BSP", "--boat", "99"}).out, "BSP  7.50  kt  30 s  stale\n");
}

TEST_F(Get, MarksValuesOlderThanTheTimeOut) {
    store(ZAN_BSP, 6.4);   // 10 s
    store(ZAN_BARO, 1013); // 120 s
    store(ZAN_MK_LAT, 50); // never
    passSeconds(10);
    EXPECT_THAT(run({"get", "BSP"}).out, Not(HasSubstr("stale")));
    passSeconds(1);
    EXPECT_THAT(run({"get", "BSP"}).out, HasSubstr("stale"));
    EXPECT_THAT(run({"get", "Baro"}).out, Not(HasSubstr("stale")));
    passSeconds(1e6);
    EXPECT_THAT(run({"get", "Baro"}).out, HasSubstr("stale"));
    EXPECT_THAT(run({"get", "Mk Lat"}).out, Not(HasSubstr("stale")));
}

TEST_F(Get, ShowsEachKindInItsOwnWay) {
    holder().system().setInteger(6, 3);
    store(ZAN_LAT, 50.766, 1);
    store(ZAN_LON, -1.305, 1);
    store(ZAN_SAIL, 12);
    store(ZAN_TMTOGUN, -300.0 / 86400.0);
    store(ZAN_GPS_TIME, 45982.5, 1);
    EXPECT_THAT(run({"get", "Lat", "--boat", "1"}).out, HasSubstr("50\u00B045.960'N"));
    EXPECT_THAT(run({"get", "Lon", "--boat", "1"}).out, HasSubstr("001\u00B018.300'W"));
    EXPECT_THAT(run({"get", "Sail"}).out, HasSubstr("12"));
    EXPECT_THAT(run({"get", "TmToGun"}).out, HasSubstr("-0:05:00"));
    EXPECT_THAT(run({"get", "GPS time", "--boat", "1"}).out, HasSubstr("2025-11-21T12:00:00Z"));
    EXPECT_THAT(run({"get", "0"}).out, HasSubstr("2025-11-22T00:00:00Z"));
}

TEST_F(Get, FollowsThePrecisionOfTheSection) {
    store(ZAN_BSP, 6.4);
    area().settings[ZAN_BSP].precision = 4;
    EXPECT_THAT(run({"get", "BSP"}).out, HasSubstr("6.4000  kt"));
}

TEST_F(Get, FollowsUnitClassAndNameOfUserChannels) {
    area().settings[ZAN_USER_3].unitClass = static_cast<std::int16_t>(UnitClass::Depth);
    writeText(area().settings[ZAN_USER_3].shortName, u"Keel");
    store(ZAN_USER_3, 2.5);
    EXPECT_EQ(run({"get", "keel"}).out, "Keel  2.5  m  0.0 s\n");
}

TEST_F(Get, ReadsAlternatingChannelsAsAClientDoes) {
    for (auto& cell : area().alternates.cells[2]) cell = ZAN_DEPTH;
    store(ZAN_DEPTH, 12.3);
    EXPECT_EQ(run({"get", "Alt 2"}).out, "Alt 2 > Depth  12.3  m  0.0 s\n");
    EXPECT_THAT(run({"get", "Alt 3"}).out, HasSubstr("-")); // stands for nothing
}

TEST_F(Get, ReadsDerivedValuesDespiteTheirHeaders) {
    store(ZAN_RUDDERS, 1.5);
    store(ZAN_RUDDERP, 4.0);
    EXPECT_THAT(run({"get", "RudderToe"}).out, HasSubstr("2.5"));
    holder().system().setFlag(system_flag::kComputeTurnRate, 1);
    store(ZAN_HDG, 100);
    passSeconds(2.0000001); // the stamp before becomes the record's header: no known kind
    store(ZAN_HDG, 110);
    EXPECT_THAT(run({"get", "ROT"}).out, HasSubstr("5.0"));
}

TEST_F(Get, WithoutSharedDataSaysSoAndMakesNone) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"get", "BSP"}, std::vector<std::string>{"get", "BSP", "--json"}}) {
        machine.trace.clear();
        const CommandRun result = run(arguments);
        EXPECT_EQ(result.code, 1);
        EXPECT_THAT(result.out, IsEmpty());
        EXPECT_THAT(result.err, HasSubstr("there is no shared data"));
        EXPECT_THAT(machine.trace, Not(::testing::Contains("OpenSettings"))) << "a section that is made is filled";
    }
}

TEST_F(Get, OnlyLooks) {
    store(ZAN_BSP, 6.4);
    passSeconds(2);
    const std::vector<unsigned char> before(reinterpret_cast<unsigned char*>(&area()),
                                            reinterpret_cast<unsigned char*>(&area() + 1));
    (void)run({"get", "BSP", "0"});
    EXPECT_EQ(std::memcmp(before.data(), &area(), sizeof(SharedArea)), 0) << "not even the clock was stamped";
}

TEST_F(Get, UnknownChannelIsNotFound) {
    const CommandRun result = run({"get", "BSP", "Bspp", "999"});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, HasSubstr("\"Bspp\""));
    EXPECT_THAT(result.err, HasSubstr("999"));
}

TEST_F(Get, ChannelNamedLikeACommandIsAChannel) {
    store(ZAN_SET, 90);
    EXPECT_THAT(run({"get", "set"}).out, HasSubstr("90"));
}

TEST_F(Get, AbsurdStampsHaveNoAge) {
    store(ZAN_BSP, 6.4);
    constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
    for (const std::int64_t stamp : {std::numeric_limits<std::int64_t>::min(), std::int64_t{-1}, std::int64_t{0},
                                     kLargest - 1, kLargest, machine.now + 100'000'001}) {
        area().fullBlocks[0].stamps[ZAN_BSP] = stamp;
        EXPECT_EQ(run({"get", "BSP"}).out, "BSP  6.40  kt  -  stale\n") << stamp;
    }
}

TEST_F(Get, StampJustAheadOfTheClockIsNow) {
    store(ZAN_BSP, 6.4);
    area().fullBlocks[0].stamps[ZAN_BSP] = machine.now + 100'000'000;
    EXPECT_EQ(run({"get", "BSP"}).out, "BSP  6.40  kt  0.0 s\n");
}

TEST_F(Get, HostileSectionYieldsHarmlessText) {
    std::vector<std::string> all{"get"};
    for (int channel = 0; channel < 414; ++channel) all.push_back(std::to_string(channel));
    for (std::uint64_t seed = 1; seed <= 8; ++seed) {
        fillWithNoise(area(), seed);
        for (const char* boat : {"0", "1", "2", "99"}) {
            std::vector<std::string> arguments = all;
            arguments.insert(arguments.end(), {"--boat", boat});
            const CommandRun result = run(arguments);
            EXPECT_EQ(result.code, 0);
            EXPECT_TRUE(isHarmless(result.out)) << "seed " << seed;
            EXPECT_TRUE(isHarmless(result.err)) << "seed " << seed;
        }
    }
}

TEST_F(Get, ExtremeNumbersStayShort) {
    area().settings[ZAN_BSP].precision = 65535;
    for (const double value : {1e308, -1e308, std::numeric_limits<double>::infinity(), std::nan(""), 5e-324}) {
        store(ZAN_BSP, 1.0);
        storeRecord(area().fullBlocks[0].current[ZAN_BSP], Record::ofNumber(value));
        const CommandRun result = run({"get", "BSP"});
        EXPECT_LE(result.out.size(), 60U) << value;
        EXPECT_EQ(result.code, 0);
    }
}

} // namespace
} // namespace tallowmere::test

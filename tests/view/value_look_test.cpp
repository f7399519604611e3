// Values, ages, states and groups, on a section in memory.
#include "view/value_look.hpp"

#include "tests/support/new_section.hpp"

#include <atomic>
#include <bit>
#include <cmath>
#include <limits>
#include <thread>
#include <vector>

namespace tallowmere::test {
namespace {

constexpr std::int64_t kSecond = 10'000'000;

class ValueLook : public NewSection {
  protected:
    [[nodiscard]] tlm_view_value look(ChannelIndex channel, BoatIndex boat = 0) const {
        return lookAtValue(area.get(), channel, boat, machine.now);
    }
    void put(ChannelIndex channel, double value, BoatIndex boat = 0) { values.storeDouble(channel, value, boat); }
    void setStamp(ChannelIndex channel, std::int64_t stamp) { area->fullBlocks[0].stamps[channel] = stamp; }
};

TEST_F(ValueLook, AValueJustWrittenIsFresh) {
    put(ZAN_BSP, 6.4);
    const tlm_view_value value = look(ZAN_BSP);
    EXPECT_EQ(value.value, 6.4);
    EXPECT_EQ(value.age_seconds, 0.0);
    EXPECT_EQ(value.stamp, machine.now);
    EXPECT_EQ(value.state, TLM_VIEW_FRESH);
    EXPECT_EQ(value.channel, ZAN_BSP);
    EXPECT_EQ(value.source, ZAN_BSP);
    EXPECT_EQ(value.record_header & 0xFF, std::uint64_t{ZAN_KIND_DOUBLE});
    EXPECT_EQ(std::bit_cast<double>(value.record_payload), 6.4);
}

TEST_F(ValueLook, AValueIsStaleBeyondItsChannelsTimeOut) {
    put(ZAN_BSP, 6.4);   // 10 s
    put(ZAN_BARO, 1013); // 120 s
    machine.now += 10 * kSecond;
    EXPECT_EQ(look(ZAN_BSP).state, TLM_VIEW_FRESH);
    machine.now += 1;
    EXPECT_EQ(look(ZAN_BSP).state, TLM_VIEW_STALE);
    EXPECT_EQ(look(ZAN_BSP).value, 6.4);
    EXPECT_EQ(look(ZAN_BSP).age_seconds, 10.0000001);
    EXPECT_EQ(look(ZAN_BARO).state, TLM_VIEW_FRESH);
}

TEST_F(ValueLook, AChannelWithoutTimeOutIsNeverStale) {
    put(ZAN_TWIST, 3);
    machine.now += 1'000'000 * kSecond;
    EXPECT_EQ(look(ZAN_TWIST).state, TLM_VIEW_TIMELESS);
    EXPECT_EQ(look(ZAN_TWIST).age_seconds, 1e6);
    setStamp(ZAN_TWIST, kNoTime);
    EXPECT_EQ(look(ZAN_TWIST).state, TLM_VIEW_TIMELESS);
    EXPECT_EQ(look(ZAN_TWIST).age_seconds, TLM_VIEW_NO_AGE);
}

TEST_F(ValueLook, AStampALittleAheadOfTheClockCountsAsNow) {
    put(ZAN_BSP, 6.4);
    machine.now -= 10 * kSecond;
    EXPECT_EQ(look(ZAN_BSP).age_seconds, 0.0);
    EXPECT_EQ(look(ZAN_BSP).state, TLM_VIEW_FRESH);
    machine.now -= 1;
    EXPECT_EQ(look(ZAN_BSP).age_seconds, TLM_VIEW_NO_AGE);
    EXPECT_EQ(look(ZAN_BSP).state, TLM_VIEW_STALE);
}

TEST_F(ValueLook, AStampWithoutMeaningGivesNoAge) {
    put(ZAN_BSP, 6.4);
    for (const std::int64_t stamp :
         {kNoTime, kNoTime - 1, std::int64_t{-1}, std::numeric_limits<std::int64_t>::min()}) {
        setStamp(ZAN_BSP, stamp);
        EXPECT_EQ(look(ZAN_BSP).age_seconds, TLM_VIEW_NO_AGE) << stamp;
        EXPECT_EQ(look(ZAN_BSP).state, TLM_VIEW_STALE) << stamp;
        EXPECT_EQ(look(ZAN_BSP).stamp, stamp);
    }
}

TEST_F(ValueLook, NoValueIsNone) {
    put(ZAN_BSP, 6.4);
    put(ZAN_BSP, NO_VALUE);
    for (const tlm_view_value& none :
         {look(ZAN_BSP), look(ZAN_AWA), look(ZAN_AWA, 1), look(414), look(65535), look(ZAN_AWA, 100),
          look(ZAN_AWA, 65535), lookAtValue(nullptr, ZAN_BSP, 0, machine.now)}) {
        EXPECT_EQ(none.state, TLM_VIEW_NONE) << none.channel;
        EXPECT_EQ(none.value, NO_VALUE);
        EXPECT_EQ(none.age_seconds, TLM_VIEW_NO_AGE);
    }
    EXPECT_EQ(look(414).source, TLM_VIEW_NO_CHANNEL);
}

TEST_F(ValueLook, ANaNIsAValue) {
    put(ZAN_BSP, std::nan(""));
    EXPECT_TRUE(std::isnan(look(ZAN_BSP).value));
    EXPECT_EQ(look(ZAN_BSP).state, TLM_VIEW_FRESH);
}

TEST_F(ValueLook, BoatsKeepTheirOwnValues) {
    put(ZAN_BSP, 7.5, 5);
    EXPECT_EQ(look(ZAN_BSP, 5).value, 7.5);
    EXPECT_EQ(look(ZAN_BSP, 6).state, TLM_VIEW_NONE);       // above the count
    EXPECT_EQ(look(ZAN_RUDDERFWD, 5).state, TLM_VIEW_NONE); // not kept
}

TEST_F(ValueLook, WhatWasNeverWrittenForBoat1IsNone) {
    put(ZAN_BSP, 7.5, 1); // the other channels' records are zeros, which GetZanVar reads as 0
    double value = -1;
    EXPECT_TRUE(readValue(area.get(), ZAN_AWA, 1, value));
    EXPECT_EQ(look(ZAN_AWA, 1).state, TLM_VIEW_NONE);
    EXPECT_EQ(look(ZAN_BSP, 1).value, 7.5);
}

TEST_F(ValueLook, AnAlternatingChannelGivesWhatItStandsFor) {
    put(ZAN_TWS, 18);
    area->alternates.cells[0][0] = ZAN_TWS;
    area->systemFlags[36] = 1;
    EXPECT_EQ(look(ZAN_ALT_0).value, 18.0);
    EXPECT_EQ(look(ZAN_ALT_0).channel, ZAN_ALT_0);
    EXPECT_EQ(look(ZAN_ALT_0).source, ZAN_TWS);
    EXPECT_EQ(look(ZAN_ALT_1).source, TLM_VIEW_NO_CHANNEL);
    EXPECT_EQ(look(ZAN_ALT_1).state, TLM_VIEW_NONE);
}

TEST_F(ValueLook, ADerivedRateIsReadByItsChannelsKind) {
    system.setFlag(27, 1); // turn rate from the heading
    put(ZAN_HDG, 100);
    machine.now += 2 * kSecond;
    put(ZAN_HDG, 103);
    EXPECT_EQ(look(ZAN_ROT).value, 1.5);
    EXPECT_EQ(look(ZAN_ROT).state, TLM_VIEW_FRESH);
}

TEST_F(ValueLook, EveryChannelReadsAsTheExportedFunctionReadsIt) {
    for (ChannelIndex channel = 1; channel < kChannelCount; ++channel) put(channel, 1 + channel % 7);
    for (ChannelIndex channel = 0; channel < kChannelCount; ++channel) {
        if (isAlternating(channel)) continue;
        double expected = NO_VALUE;
        const bool holds = readValue(area.get(), channel, 0, expected);
        const tlm_view_value seen = look(channel);
        if (hasForeignHeader(channel)) continue;
        EXPECT_EQ(seen.state != TLM_VIEW_NONE, holds) << channel;
        EXPECT_EQ(std::bit_cast<std::uint64_t>(seen.value), std::bit_cast<std::uint64_t>(expected)) << channel;
    }
}

TEST_F(ValueLook, NoContentMakesItFail) {
    for (unsigned seed = 0; seed < 20; ++seed) {
        fillWithNoise(seed);
        const auto before = std::make_unique<SharedArea>(*area);
        for (unsigned boat = 0; boat < 102; ++boat)
            for (unsigned channel = 0; channel < 416; ++channel) {
                const tlm_view_value value = look(static_cast<ChannelIndex>(channel), static_cast<BoatIndex>(boat));
                EXPECT_LE(value.state, TLM_VIEW_TIMELESS);
                if (value.state == TLM_VIEW_NONE) {
                    EXPECT_EQ(value.value, NO_VALUE);
                }
                EXPECT_TRUE(value.age_seconds >= 0 || value.age_seconds == TLM_VIEW_NO_AGE);
            }
        EXPECT_TRUE(sameBytes(*before));
    }
}

TEST_F(ValueLook, AGroupAtRestIsReadTwice) {
    put(ZAN_BSP, 6.4);
    machine.now += kSecond;
    put(ZAN_AWA, -31);
    const std::vector<ChannelIndex> channels{ZAN_AWA, ZAN_BSP, ZAN_AWS, 9999, ZAN_BSP};
    std::vector<tlm_view_value> seen(channels.size());
    const tlm_view_group group = lookAtGroup(area.get(), channels, 0, machine.now, seen);
    EXPECT_EQ(group.quiet, 1U);
    EXPECT_EQ(group.tries, 2U);
    EXPECT_EQ(group.values, 3U);
    EXPECT_EQ(group.moment, machine.now);
    EXPECT_EQ(group.newest_stamp - group.oldest_stamp, kSecond);
    EXPECT_EQ(seen[0].value, -31.0);
    EXPECT_EQ(seen[1].value, 6.4);
    EXPECT_EQ(seen[1].age_seconds, 1.0);
    EXPECT_EQ(seen[2].state, TLM_VIEW_NONE);
    EXPECT_EQ(seen[3].state, TLM_VIEW_NONE);
    EXPECT_EQ(seen[4].value, 6.4);
    for (const tlm_view_value& value : seen) EXPECT_EQ(value.changed, 0);
}

TEST_F(ValueLook, AnEmptyGroupAndOneWithoutASectionHaveNoValues) {
    const tlm_view_group empty = lookAtGroup(area.get(), {}, 0, machine.now, {});
    EXPECT_EQ(empty.values, 0U);
    EXPECT_EQ(empty.quiet, 1U);
    EXPECT_EQ(empty.newest_stamp, TLM_VIEW_NO_TIME);

    const std::vector<ChannelIndex> channels{ZAN_BSP};
    std::vector<tlm_view_value> seen(1);
    const tlm_view_group without = lookAtGroup(nullptr, channels, 0, machine.now, seen);
    EXPECT_EQ(without.quiet, 0U);
    EXPECT_EQ(without.values, 0U);
    EXPECT_EQ(seen[0].state, TLM_VIEW_NONE);
}

// The writer puts a number into one channel and then into the other. So at any one moment the first is equal to the
// second or one ahead, and nothing else.
TEST_F(ValueLook, AQuietGroupHoldsValuesOfOneMoment) {
    put(ZAN_BSP, 0);
    put(ZAN_DEPTH, 0);
    std::atomic<bool> stop = false;
    std::thread writer([&] {
        auto& block = area->fullBlocks[0];
        for (std::int64_t n = 1; !stop.load(std::memory_order_relaxed); ++n)
            for (const ChannelIndex channel : {ZAN_BSP, ZAN_DEPTH}) {
                writeOnce(block.stamps[channel], n);
                storeRecord(block.current[channel], Record::ofNumber(static_cast<double>(n % 30000)));
            }
    });
    const std::vector<ChannelIndex> channels{ZAN_DEPTH, ZAN_BSP};
    std::vector<tlm_view_value> seen(2);
    int quiet = 0;
    int disturbed = 0;
    for (int i = 0; i < 2'000'000 && (quiet < 20'000 || disturbed == 0); ++i) {
        const tlm_view_group group = lookAtGroup(area.get(), channels, 0, machine.now, seen);
        if (group.tries > 2 || group.quiet == 0) ++disturbed;
        if (group.quiet == 0) continue;
        ++quiet;
        const int ahead = (static_cast<int>(seen[1].value - seen[0].value) + 30000) % 30000;
        ASSERT_TRUE(ahead == 0 || ahead == 1) << seen[0].value << ' ' << seen[1].value;
    }
    stop = true;
    writer.join();
    EXPECT_GT(quiet, 0);
    EXPECT_GT(disturbed, 0) << "the writer was never met at work";
}

} // namespace
} // namespace tallowmere::test

// Channel 0, which the library stamps itself.
#include "tests/channels/store_fixture.hpp"

namespace tallowmere::test {
namespace {

class ClockChannel : public StoreTest {
  protected:
    void expectFullClock(std::size_t boat, std::int64_t now) {
        EXPECT_EQ(raw.get<std::int64_t>(place::fullStamp(0, boat)), now) << boat;
        EXPECT_EQ(raw.get<std::int64_t>(place::fullValue(0, boat) + 8), now) << boat;
        EXPECT_EQ(raw.get<std::int64_t>(place::fullSecond(0, boat) + 8), 0) << boat;
        EXPECT_EQ(raw.get<std::int64_t>(place::fullThird(0, boat) + 8), now) << boat;
    }
    void expectCompactClock(std::size_t boat, std::int64_t now) {
        EXPECT_EQ(raw.get<std::int64_t>(place::compactStamp(0, boat)), now) << boat;
        EXPECT_EQ(raw.get<std::int64_t>(place::compactValue(0, boat) + 8), now) << boat;
        EXPECT_EQ(raw.get<std::int64_t>(place::compactThird(0, boat) + 8), now) << boat;
    }
};

TEST_F(ClockChannel, IsStampedForBoats0And1WhateverTheBoatCount) {
    for (std::uint32_t count : {0U, 1U, 2U}) {
        raw.put<std::uint32_t>(place::kBoatCount, count);
        machine.now += 12345;
        const auto before = raw.copy();
        EXPECT_EQ(store.stampTime(), machine.now);
        expectFullClock(0, machine.now);
        expectFullClock(1, machine.now);
        EXPECT_EQ(changesOutside(before, raw.copy(),
                                 {{place::fullStamp(0, 0), 8},
                                  {place::fullValue(0, 0) + 8, 8},
                                  {place::fullSecond(0, 0) + 8, 8},
                                  {place::fullThird(0, 0) + 8, 8},
                                  {place::fullStamp(0, 1), 8},
                                  {place::fullValue(0, 1) + 8, 8},
                                  {place::fullSecond(0, 1) + 8, 8},
                                  {place::fullThird(0, 1) + 8, 8}}),
                  "");
    }
}

TEST_F(ClockChannel, IsStampedForOtherBoatsBelowTheBoatCountOnly) {
    raw.put<std::uint32_t>(place::kBoatCount, 5);
    store.stampTime();
    for (std::size_t boat = 2; boat < 5; ++boat) expectCompactClock(boat, machine.now);
    for (std::size_t boat = 5; boat < 100; ++boat) {
        EXPECT_EQ(raw.get<std::int64_t>(place::compactStamp(0, boat)), INT64_MAX) << boat;
        EXPECT_EQ(raw.get<std::int64_t>(place::compactValue(0, boat) + 8), INT64_MAX) << boat;
    }
}

TEST_F(ClockChannel, KindBytesAreLeftAlone) {
    raw.put<std::uint32_t>(place::kBoatCount, 4);
    store.stampTime();
    EXPECT_EQ(raw.get<std::uint64_t>(place::fullValue(0, 0)), 3U);
    EXPECT_EQ(raw.get<std::uint64_t>(place::fullSecond(0, 0)), 3U);
    EXPECT_EQ(raw.get<std::uint64_t>(place::fullThird(0, 0)), 3U);
    EXPECT_EQ(raw.get<std::uint64_t>(place::fullValue(0, 1)), 0U); // boat 1's block was never filled
    EXPECT_EQ(raw.get<std::uint64_t>(place::compactValue(0, 3)), 3U);
    raw.put<std::uint64_t>(place::fullValue(0, 0), 0xABCDEF0123456789);
    raw.put<std::uint64_t>(place::compactThird(0, 2), 0x77);
    store.stampTime();
    EXPECT_EQ(raw.get<std::uint64_t>(place::fullValue(0, 0)), 0xABCDEF0123456789U);
    EXPECT_EQ(raw.get<std::uint64_t>(place::compactThird(0, 2)), 0x77U);
}

TEST_F(ClockChannel, HostileBoatCountStopsAtTheLastBoat) {
    for (std::uint32_t count : {100U, 101U, 65536U, 4'000'000'000U, UINT32_MAX}) {
        raw.put<std::uint32_t>(place::kBoatCount, count);
        ++machine.now;
        const auto before = raw.copy();
        store.stampTime();
        for (std::size_t boat = 2; boat < 100; ++boat) expectCompactClock(boat, machine.now);
        EXPECT_EQ(raw.get<std::uint32_t>(place::kBoatCount), count);
        // Nothing behind the last block.
        const auto after = raw.copy();
        EXPECT_TRUE(std::equal(before.begin() + 252824, before.end(), after.begin() + 252824));
    }
}

TEST_F(ClockChannel, EveryWriteStampsItBeforeItStores) {
    write(1, 6.4, 5); // raises the boat count to 6, after the stamping
    expectFullClock(0, machine.now);
    expectFullClock(1, machine.now);
    EXPECT_EQ(raw.get<std::int64_t>(place::compactStamp(0, 5)), INT64_MAX);
    machine.now += 10;
    write(1, 6.5, 0);
    for (std::size_t boat = 2; boat <= 5; ++boat) expectCompactClock(boat, machine.now);
    EXPECT_EQ(raw.get<std::int64_t>(place::compactStamp(0, 6)), INT64_MAX);
}

TEST_F(ClockChannel, ReadsAsTheTimeOfTheLastWriteInWholeSeconds) {
    EXPECT_FALSE(store.fetch(0, 0).holdsValue); // boat count 0
    machine.now += 4'999'999;
    write(1, 6.4);
    EXPECT_TRUE(store.fetch(0, 0).holdsValue);
    EXPECT_EQ(read(0), 45983.0); // 2025-11-22 00:00:00
}

TEST_F(ClockChannel, SetsNoFlagsAndNoBoatCount) {
    const auto before = raw.copy();
    store.stampTime();
    const auto after = raw.copy();
    EXPECT_TRUE(std::equal(before.begin(), before.begin() + 59096, after.begin()));
}

} // namespace
} // namespace tallowmere::test

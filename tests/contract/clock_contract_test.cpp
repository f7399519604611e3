#include "tests/contract/platform_fixture.hpp"

namespace tallowmere::test {
namespace {

constexpr std::int64_t kTicksPerMillisecond = 10'000;
constexpr std::int64_t kStartOf2020 = 132'223'104'000'000'000; // 100 ns since 1601-01-01
constexpr std::int64_t kStartOf2100 = 157'469'184'000'000'000;

class ClockContract : public ContractTest {};

TEST_P(ClockContract, NowCountsFrom1601) {
    EXPECT_GT(platform.now(), kStartOf2020);
    EXPECT_LT(platform.now(), kStartOf2100);
}

TEST_P(ClockContract, TimeMovesForwardBySleep) {
    const std::int64_t before = platform.now();
    platform.sleepMilliseconds(30);
    const std::int64_t after = platform.now();
    EXPECT_GE(after - before, 25 * kTicksPerMillisecond);
    EXPECT_LT(after - before, 10'000 * kTicksPerMillisecond);
}

TEST_P(ClockContract, TheTimeZoneIsWithinADay) {
    const std::optional<platform::TimeZone> zone = platform.timeZone();
    ASSERT_TRUE(zone);
    const int bias = zone->bias + (zone->daylight ? zone->daylightBias : 0);
    EXPECT_LT(bias, 24 * 60);
    EXPECT_GT(bias, -24 * 60);
}

TALLOWMERE_CONTRACT(ClockContract);

} // namespace
} // namespace tallowmere::test

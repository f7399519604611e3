#include "core/channels/value_age.hpp"

#include <gtest/gtest.h>

namespace tallowmere {
namespace {

constexpr std::int64_t kNow = 133'000'000'000'000'000;

TEST(ValueAge, IsTheTimeSinceTheStampInSeconds) {
    EXPECT_EQ(ageSeconds(kNow - 15'000'000, kNow), 1.5);
    EXPECT_EQ(ageSeconds(kNow, kNow), 0.0);
}

TEST(ValueAge, OfAStampUpToTenSecondsAheadIsZero) {
    EXPECT_EQ(ageSeconds(kNow + kMostAhead, kNow), 0.0);
    EXPECT_EQ(ageSeconds(kNow + kMostAhead + 1, kNow), std::nullopt);
}

TEST(ValueAge, OfWhatIsNoTimeIsUnknown) {
    EXPECT_EQ(ageSeconds(0, kNow), std::nullopt);
    EXPECT_EQ(ageSeconds(-1, kNow), std::nullopt);
    EXPECT_EQ(ageSeconds(INT64_MAX, kNow), std::nullopt);
    EXPECT_EQ(ageSeconds(kNow, 0), std::nullopt);
    EXPECT_EQ(ageSeconds(kNow, INT64_MIN), std::nullopt);
}

} // namespace
} // namespace tallowmere

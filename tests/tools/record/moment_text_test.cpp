#include "tools/record/moment_text.hpp"

#include <gtest/gtest.h>

namespace tallowmere::recording {
namespace {

constexpr std::int64_t k2025 = 134'082'432'000'000'000; // 2025-11-22 00:00:00 UTC

TEST(MomentText, GivesTheMomentToTheTick) {
    EXPECT_EQ(momentText(k2025), "2025-11-22T00:00:00.0000000Z");
    EXPECT_EQ(momentText(k2025 + 1), "2025-11-22T00:00:00.0000001Z");
    EXPECT_EQ(momentText(k2025 - 1), "2025-11-21T23:59:59.9999999Z");
    EXPECT_EQ(momentText(1), "1601-01-01T00:00:00.0000001Z");
}

TEST(MomentText, IsReadBackToTheTick) {
    for (const std::int64_t ticks : {std::int64_t{1}, k2025, k2025 + 1234567, std::int64_t{2'650'467'743'999'999'999}})
        EXPECT_EQ(parseMoment(momentText(ticks)), ticks);
}

TEST(MomentText, FractionAndZoneMayBeLeftOut) {
    EXPECT_EQ(parseMoment("2025-11-22T00:00:00"), k2025);
    EXPECT_EQ(parseMoment("2025-11-22T00:00:00Z"), k2025);
    EXPECT_EQ(parseMoment("2025-11-22T00:00:00.5Z"), k2025 + 5'000'000);
}

TEST(MomentText, WhatIsNoMomentIsNone) {
    for (const char* text :
         {"", "2025", "2025-11-22", "2025-13-01T00:00:00", "2025-02-30T00:00:00", "2025-11-22T24:00:00",
          "2025-11-22T00:60:00", "2025-11-22T00:00:60", "2025-11-22T00:00:00.", "2025-11-22T00:00:00.12345678",
          "2025-11-22T00:00:00x", "2025-11-22 00:00:00", "-025-11-22T00:00:00", "1601-01-01T00:00:00",
          "1600-12-31T23:59:59", "2025-11-22T00:00:00ZZ"})
        EXPECT_FALSE(parseMoment(text)) << text;
}

TEST(MomentText, PlaceIsAMomentOrSecondsAfterTheStart) {
    EXPECT_EQ(parsePlace("2025-11-22T00:00:01Z")->in(5), k2025 + 10'000'000);
    EXPECT_EQ(parsePlace("+1.5")->in(k2025), k2025 + 15'000'000);
    for (const char* text : {"", "+", "+-1", "+nan", "+1e30", "1", "+1x"}) EXPECT_FALSE(parsePlace(text)) << text;
}

} // namespace
} // namespace tallowmere::recording

#include "log/system_log.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace tallowmere::test {
namespace {

constexpr std::int64_t kSecond = 10'000'000;
constexpr std::int64_t kUnixEpoch = 116'444'736'000'000'000;

/// Seconds since 1970 on the section's scale.
constexpr std::int64_t at(std::int64_t seconds, std::int64_t ticks = 0) {
    return kUnixEpoch + seconds * kSecond + ticks;
}

constexpr std::int64_t kExample = at(1'794'751'407); // 2026-11-15 14:03:27
constexpr std::int64_t kEnd = at(32'535'216'000);    // 3001-01-01

TEST(FormatTime, FollowsTheFormat) {
    EXPECT_EQ(FormatTime(kExample, u"%H:%M:%S : "), u"14:03:27 : ");
    EXPECT_EQ(FormatTime(kExample, u"\\log_system_%d%b%Y.log"), u"\\log_system_15Nov2026.log");
    EXPECT_EQ(FormatTime(kExample, u"%a %A %j %y"), u"Sun Sunday 319 26");
}

TEST(FormatTime, CutsFractionsOfASecond) {
    EXPECT_EQ(FormatTime(kExample + kSecond - 1, u"%H:%M:%S"), u"14:03:27");
}

TEST(FormatTime, EmptyFormatGivesTheDefaultForm) {
    EXPECT_EQ(FormatTime(kExample, u""), u"2026-Nov-15 14:03:27");
}

TEST(FormatTime, DefaultFormNamesEveryMonth) {
    constexpr const char16_t* kMonths[] = {u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun",
                                           u"Jul", u"Aug", u"Sep", u"Oct", u"Nov", u"Dec"};
    for (int month = 0; month < 12; ++month) {
        const std::u16string text = FormatTime(at(month * std::int64_t{2'629'746} + 1'300'000), u"");
        EXPECT_EQ(text.substr(5, 3), kMonths[month]);
    }
}

TEST(FormatTime, DefaultFormRoundsToTheNearestSecondAndHalvesToTheEvenOne) {
    EXPECT_EQ(FormatTime(at(20, 4'999'999), u""), u"1970-Jan-01 00:00:20");
    EXPECT_EQ(FormatTime(at(20, 5'000'000), u""), u"1970-Jan-01 00:00:20");
    EXPECT_EQ(FormatTime(at(20, 5'000'001), u""), u"1970-Jan-01 00:00:21");
    EXPECT_EQ(FormatTime(at(21, 4'999'999), u""), u"1970-Jan-01 00:00:21");
    EXPECT_EQ(FormatTime(at(21, 5'000'000), u""), u"1970-Jan-01 00:00:22");
    EXPECT_EQ(FormatTime(at(59, 5'000'000), u""), u"1970-Jan-01 00:01:00");
}

TEST(FormatTime, LeapDaysAreCounted) {
    EXPECT_EQ(FormatTime(at(951'782'400), u"%Y-%m-%d %j"), u"2000-02-29 060");
    EXPECT_EQ(FormatTime(at(4'107'542'400), u"%Y-%m-%d"), u"2100-03-01");
    EXPECT_EQ(FormatTime(at(4'107'542'399), u"%Y-%m-%d"), u"2100-02-28");
}

TEST(FormatTime, BeginsWith1970) {
    EXPECT_EQ(FormatTime(at(0), u"%Y %H:%M:%S"), u"1970 00:00:00");
    EXPECT_EQ(FormatTime(at(0, -1), u"%Y"), u"");
    EXPECT_EQ(FormatTime(at(-1), u""), u"");
    EXPECT_EQ(FormatTime(0, u"%Y"), u"");
    EXPECT_EQ(FormatTime(-1, u"%Y"), u"");
    EXPECT_EQ(FormatTime(std::numeric_limits<std::int64_t>::min(), u"%Y"), u"");
    EXPECT_EQ(FormatTime(std::numeric_limits<std::int64_t>::min(), u""), u"");
}

TEST(FormatTime, EndsWith3000) {
    EXPECT_EQ(FormatTime(kEnd - 1, u"%Y-%m-%d %H:%M:%S"), u"3000-12-31 23:59:59");
    EXPECT_EQ(FormatTime(kEnd, u"%Y"), u"");
    EXPECT_EQ(FormatTime(kEnd - kSecond, u""), u"3000-Dec-31 23:59:59");
    EXPECT_EQ(FormatTime(kEnd - 1, u""), u""); // rounds into 3001
}

TEST(FormatTime, NoTimeIsEmpty) {
    constexpr std::int64_t kNoTime = std::numeric_limits<std::int64_t>::max();
    for (const std::int64_t time : {kNoTime, kNoTime - 1, kNoTime - kSecond}) {
        EXPECT_EQ(FormatTime(time, u"%Y"), u"");
        EXPECT_EQ(FormatTime(time, u""), u"");
    }
}

TEST(FormatTime, TextOf255CharactersIsTheLongest) {
    EXPECT_EQ(FormatTime(kExample, std::u16string(251, u'x') + u"%Y"), std::u16string(251, u'x') + u"2026");
    EXPECT_EQ(FormatTime(kExample, std::u16string(252, u'x') + u"%Y"), u"");
    EXPECT_EQ(FormatTime(kExample, std::u16string(100'000, u'x')), u"");
}

} // namespace
} // namespace tallowmere::test

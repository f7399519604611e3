#include "tests/tools/feed/fake_sink.hpp"
#include "tools/feed/summary.hpp"

#include <gmock/gmock.h>

namespace tallowmere::feed {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(Grouped, PutsACommaBetweenThousands) {
    EXPECT_EQ(grouped(0), "0");
    EXPECT_EQ(grouped(999), "999");
    EXPECT_EQ(grouped(1000), "1,000");
    EXPECT_EQ(grouped(59'887), "59,887");
    EXPECT_EQ(grouped(18'446'744'073'709'551'615U), "18,446,744,073,709,551,615");
}

class Summary : public FeedTest {};

TEST_F(Summary, NamesWhatWasMet) {
    feedLine("$IIMTW,016,C*3A");
    feedBody("GPGSV,3");
    feedLine("$IIMTW,016,C*3B");
    feedBody("IIHDM,302,M");
    const std::string text = summaryText(feed.counts(), "race.nmea");
    EXPECT_THAT(text, HasSubstr("lines               4"));
    EXPECT_THAT(text, HasSubstr("sentences used      2  (HDM 1, MTW 1)"));
    EXPECT_THAT(text, HasSubstr("unknown             1  (GSV 1)"));
    EXPECT_THAT(text, HasSubstr("damaged             1  (bad checksum 1, cut 0, binary 0, too long 0)"));
    EXPECT_THAT(text, HasSubstr("no variation        1"));
    EXPECT_THAT(text, HasSubstr("values written      1"));
    EXPECT_THAT(text, HasSubstr("race.nmea:3: bad checksum: $IIMTW,016,C*3B"));
    EXPECT_THAT(text, Not(HasSubstr("AIS"))) << "what wasn't met isn't named";
    EXPECT_THAT(text, Not(HasSubstr("merged")));
}

TEST_F(Summary, NamesTheFirstFewOfEachKindOfDamage) {
    for (int i = 0; i < 10; ++i) feedLine("$IIMTW,016,C*3B"); // its checksum is 3A
    feedLine("$IIMTW,016,C");                                 // without checksum
    feedLine("$IIMTW,016,C*3");
    feedLine("$IIMT$IIMTW,016,C*3A");
    const std::string text = summaryText(feed.counts(), "race.nmea");
    EXPECT_THAT(text, HasSubstr("race.nmea:3: bad checksum: "));
    EXPECT_THAT(text, Not(HasSubstr("race.nmea:4:")));
    EXPECT_THAT(text, HasSubstr("race.nmea:12: cut: $IIMTW,016,C*3"));
    EXPECT_THAT(text, HasSubstr("race.nmea:13: merged: $IIMT$IIMTW,016,C*3A"));
}

TEST_F(Summary, OfNothingIsShort) {
    EXPECT_EQ(summaryText(feed.counts(), "-"), "  lines               0\n"
                                               "  sentences used      0\n"
                                               "  values written      0");
}

TEST_F(Summary, ProgressFitsATerminal) {
    FeedCounts counts;
    counts.lines = counts.written = 999'999'999'999;
    counts.boats = 99;
    counts.byKind.fill(999'999'999);
    EXPECT_LT(progressText(counts).size(), 80U);
}

} // namespace
} // namespace tallowmere::feed

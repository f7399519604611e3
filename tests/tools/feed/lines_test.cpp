// What the feed counts.
#include "tests/tools/feed/fake_sink.hpp"

namespace tallowmere::feed {
namespace {

using nmea::LineKind;

class Lines : public FeedTest {};

TEST_F(Lines, EachKindIsCountedOnce) {
    feedLine("$IIMTW,016,C*3A");
    feedLine("$IIMTW,016,C*3B");
    feedLine("$IIMTW,016,C*3");
    feedLine("$IIMTW,016,C");
    feedLine("Setup complete..");
    feedLine("$IIMTW,\x01*00");
    feedLine("$IIVHW,,T$IIMTW,017,C*3B");
    feedLine("$IIMTW,016,C*3A$IIVHW");
    feed.take({"$IIMTW", true, ++number});
    const FeedCounts& counts = feed.counts();
    EXPECT_EQ(counts.lines, 9U);
    for (const LineKind kind : {LineKind::Sentence, LineKind::BadChecksum, LineKind::Cut, LineKind::NoChecksum,
                                LineKind::Text, LineKind::Binary, LineKind::TooLong})
        EXPECT_EQ(counts.of(kind), 1U) << static_cast<int>(kind);
    EXPECT_EQ(counts.of(LineKind::Merged), 2U);
    EXPECT_EQ(counts.mergedUsed, 1U);
    EXPECT_EQ(counts.damagedLines(), 4U);
    EXPECT_EQ(counts.used.at("MTW"), 2U);
    EXPECT_EQ(value(ZAN_SEATEMP), 17.0);
}

TEST_F(Lines, SentenceWithoutChecksumIsNotUsed) {
    feedLine("$IIMTW,016,C");
    EXPECT_TRUE(sink.values.empty());
}

TEST_F(Lines, UnknownSentencesAreCountedByName) {
    feedBody("PGRMT,GPS17x");
    feedBody("PGRMT,GPS17x");
    feedBody("GPGSV,3,1,12");
    feedBody("!AIVDO"); // no start of its own: an address that isn't one
    feedBody("AIVDO,1,1,,,15Ml7W?P?wG@5BRE`tw>4?vP0L16,0", '!');
    feedBody("IIMTW,016,C", '!'); // a packed sentence of that name does not exist
    feedBody(",1,2");
    EXPECT_EQ(feed.counts().unknown.at("PGRMT"), 2U);
    EXPECT_EQ(feed.counts().unknown.at("GSV"), 1U);
    EXPECT_EQ(feed.counts().unknown.at("VDO"), 1U);
    EXPECT_EQ(feed.counts().unknown.at("MTW"), 1U);
    EXPECT_EQ(feed.counts().unknown.at("(no name)"), 1U);
    EXPECT_TRUE(sink.values.empty());
}

TEST_F(Lines, TheFirstFewDamagedLinesAreKeptReadable) {
    feedLine("$IIMTW,016,C*3A");
    feedLine("\x1b[2J$\x07");
    for (int count = 0; count < 10; ++count) feedLine("$IIMTW," + std::string(100, 'x') + "*00");
    ASSERT_EQ(feed.counts().damaged.size(), 1 + FeedCounts::kDamagedKept);
    EXPECT_EQ(feed.counts().damaged[0].number, 2U);
    EXPECT_EQ(feed.counts().damaged[0].excerpt, ".[2J$.");
    EXPECT_EQ(feed.counts().damaged[1].number, 3U);
    EXPECT_EQ(feed.counts().damaged[1].excerpt.size(), 63U); // 60 and three dots
}

TEST(TimeIn, KnowsTheFourSentencesThatCarryIt) {
    const auto timeOf = [](std::string_view body) {
        std::string line = nmea::makeLine('$', body);
        line.resize(line.size() - 2);
        return timeIn({line, false, 1});
    };
    EXPECT_EQ(timeOf("ECRMC,000010,A"), 10.0);
    EXPECT_EQ(timeOf("ECRMC,000010,V"), 10.0); // the clock may be right where the position is not
    EXPECT_EQ(timeOf("ECZDA,000011,14,07,2008,,"), 11.0);
    EXPECT_EQ(timeOf("GPGGA,000012.5,"), 12.5);
    EXPECT_EQ(timeOf("GPGLL,,,,,000013,A"), 13.0);
    EXPECT_EQ(timeOf("IIMTW,000014"), std::nullopt);
    EXPECT_EQ(timeOf("ECRMC,,A"), std::nullopt);
    EXPECT_EQ(timeIn({"$ECRMC,000010,A*00", false, 1}), std::nullopt);
    EXPECT_EQ(timeIn({"", false, 1}), std::nullopt);
}

} // namespace
} // namespace tallowmere::feed

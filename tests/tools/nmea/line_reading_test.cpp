#include "tools/nmea/line_reading.hpp"

#include <gtest/gtest.h>

#include <string>

namespace tallowmere::nmea {
namespace {

LineReading read(std::string_view text) {
    return readLine(Line{text, false, 1});
}

TEST(LineReading, RightChecksumGivesTheBody) {
    const LineReading reading = read("$IIMTW,016,C*3A");
    EXPECT_EQ(reading.kind, LineKind::Sentence);
    EXPECT_EQ(reading.start, '$');
    EXPECT_EQ(reading.body, "IIMTW,016,C");
}

TEST(LineReading, ChecksumDigitsMayBeInEitherCase) {
    EXPECT_EQ(read("$IIMTW,016,C*3a").kind, LineKind::Sentence);
}

TEST(LineReading, BlanksAtTheEndAreNoPartOfTheLine) {
    EXPECT_EQ(read("$IIMTW,016,C*3A \t").kind, LineKind::Sentence);
}

TEST(LineReading, EachWrongChecksumIsRefused) {
    int right = 0;
    for (int sum = 0; sum < 256; ++sum) {
        constexpr std::string_view kDigits = "0123456789ABCDEF";
        std::string text = "$IIMTW,016,C*";
        text += kDigits[static_cast<std::size_t>(sum / 16)];
        text += kDigits[static_cast<std::size_t>(sum % 16)];
        const LineReading reading = read(text);
        if (reading.usable()) ++right;
        EXPECT_EQ(reading.kind, sum == 0x3A ? LineKind::Sentence : LineKind::BadChecksum) << text;
    }
    EXPECT_EQ(right, 1);
}

TEST(LineReading, EverySingleChangedCharacterIsNoticed) {
    const std::string good = "$IIVHW,,T,302,M,07.31,N,13.24,K*65";
    ASSERT_TRUE(read(good).usable());
    for (std::size_t place = 1; place < good.size() - 3; ++place) {
        std::string text = good;
        text[place] = static_cast<char>(text[place] ^ 1);
        EXPECT_FALSE(read(text).usable()) << text;
    }
}

TEST(LineReading, EveryCutEndIsNoticed) {
    const std::string good = "$IIVHW,,T,302,M,07.31,N,13.24,K*65";
    for (std::size_t length = 1; length < good.size(); ++length)
        EXPECT_FALSE(read(good.substr(0, length)).usable()) << length;
    EXPECT_EQ(read(good.substr(0, good.size() - 1)).kind, LineKind::Cut);
    EXPECT_EQ(read(good.substr(0, good.size() - 2)).kind, LineKind::Cut);
    EXPECT_EQ(read(good.substr(0, good.size() - 3)).kind, LineKind::NoChecksum);
}

TEST(LineReading, ChecksumOfThreeCharactersOrOthersThanDigitsIsACutLine) {
    EXPECT_EQ(read("$IIMTW,016,C*3A0").kind, LineKind::Cut);
    EXPECT_EQ(read("$IIMTW,016,C*3,").kind, LineKind::Cut);
    EXPECT_EQ(read("$IIMTW,016,C*-1").kind, LineKind::Cut);
    EXPECT_EQ(read("$IIMTW,016,C*0x").kind, LineKind::Cut);
}

TEST(LineReading, LineWithoutStartCharacterIsText) {
    EXPECT_EQ(read("Setup complete..").kind, LineKind::Text);
    EXPECT_EQ(read("IIMTW,016,C*3A").kind, LineKind::Text);
    EXPECT_EQ(read("").kind, LineKind::Text);
    EXPECT_EQ(read("   ").kind, LineKind::Text);
}

TEST(LineReading, MissingChecksumIsNotBelieved) {
    EXPECT_EQ(read("$IIMTW,016,C").kind, LineKind::NoChecksum);
    EXPECT_EQ(read("$").kind, LineKind::NoChecksum);
    EXPECT_EQ(read("!!VER:1.9,UID:MEGA,APX:0,").kind, LineKind::NoChecksum);
}

TEST(LineReading, EmptyBodyIsNoSentence) {
    EXPECT_EQ(read("$*00").kind, LineKind::BadChecksum);
    EXPECT_FALSE(read("$*00").usable());
}

TEST(LineReading, RepeatedStartCountsOnce) {
    const LineReading reading = read("$$IIMTW,016,C*3A");
    EXPECT_EQ(reading.kind, LineKind::Sentence);
    EXPECT_EQ(reading.body, "IIMTW,016,C");
}

TEST(LineReading, MergedLineGivesItsLastSentenceWhenThatIsWhole) {
    for (const std::string_view text :
         {"$IIVHW,,T,30$IIMTW,016,C*3A", "$IIVHW,,T,302,M,07.31,N,13.24,K*65$IIMTW,016,C*3A", "noise $IIMTW,016,C*3A",
          "!AIVDM,1,1,$GP$$IIMTW,016,C*3A", "\xEF\xBB\xBF$IIMTW,016,C*3A"}) {
        const LineReading reading = read(text);
        EXPECT_EQ(reading.kind, LineKind::Merged) << text;
        EXPECT_EQ(reading.body, "IIMTW,016,C") << text;
    }
}

TEST(LineReading, MergedLineWithoutAWholeTailGivesNothing) {
    for (const std::string_view text : {"$IIMTW,016,C*3A$IIVHW,,T,30", "$SDDPT,2.58,0.00,100.0*F*",
                                        "$IIMTW,016,C*3A*3A", "x$IIMTW,016,C*3B", "$IIMTW,016,C*3A!"}) {
        EXPECT_EQ(read(text).kind, LineKind::Merged) << text;
        EXPECT_FALSE(read(text).usable()) << text;
    }
}

TEST(LineReading, StartCharacterInsideAWholeTextIsAllowed) {
    const std::string body = "GPTXT,01,01,02,Hello!";
    std::string text = "$" + body + "*";
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    text += kDigits[checksumOf(body) / 16U];
    text += kDigits[checksumOf(body) % 16U];
    EXPECT_EQ(read(text).kind, LineKind::Sentence);
    EXPECT_EQ(read(text).body, body);
}

TEST(LineReading, BinaryBytesAreNoSentence) {
    EXPECT_EQ(read("$IIMTW,\x01\x02,C*3A").kind, LineKind::Binary);
    EXPECT_EQ(read("\xFF\xFE\xFD").kind, LineKind::Binary);
    EXPECT_EQ(read(std::string_view("$IIMTW,016,C*3A\0", 16)).kind, LineKind::Binary);
}

TEST(LineReading, TooLongLineIsNotLookedAt) {
    EXPECT_EQ(readLine(Line{"$IIMTW,016,C*3A", true, 1}).kind, LineKind::TooLong);
}

TEST(LineReading, TagBlockIsPassedOver) {
    const LineReading reading = read("\\s:station,c:1206390000*79\\!AIVDM,1,1,,A,15Ml7W?P?wG@5BRE`tw>4?vP0L16,0*28");
    EXPECT_EQ(reading.kind, LineKind::Sentence);
    EXPECT_EQ(reading.start, '!');
    EXPECT_EQ(read("\\unfinished").kind, LineKind::Text);
}

TEST(Checksum, IsTheExclusiveOrOfAllCharacters) {
    EXPECT_EQ(checksumOf(""), 0);
    EXPECT_EQ(checksumOf("A"), 0x41);
    EXPECT_EQ(checksumOf("AB"), 0x03);
    EXPECT_EQ(checksumOf("\xFF"), 0xFF);
}

} // namespace
} // namespace tallowmere::nmea

// Nothing that arrives may break the feed or put nonsense into a channel.
#include "tests/tools/feed/fake_sink.hpp"
#include "tools/feed/plausible.hpp"
#include "tools/nmea/line_splitter.hpp"

#include <random>
#include <vector>

namespace tallowmere::feed {
namespace {

const std::vector<std::string> kGood = {
    "ECRMC,194310,A,3748.784,N,12226.831,W,8.0,316.0,140708,015.0,E,A",
    "GPGGA,190333.000,3503.8853,N,07658.0704,W,2,08,1.0,-5.1,M,-34.8,M,1.3,0120",
    "GPGLL,6005.071,N,02332.346,E,095559,A,D",
    "IIVTG,224.44,T,224.44,M,5.81,N,10.8,K,D",
    "ECZDA,194310,14,07,2008,00,00",
    "IIVHW,310.0,T,302,M,07.31,N,13.5,K",
    "HCHDG,350.0,4.0,W,20.0,E",
    "IIHDM,302,M",
    "IIHDT,302,T",
    "IIMWV,338,R,13.41,N,A",
    "IIVWR,077,L,20.5,N,10.5,M,038.0,K",
    "IIVWT,077,L,20.5,N,10.5,M,038.0,K",
    "WIMWD,282.0,T,267.0,M,18.4,N,9.5,M",
    "IIDBT,070.0,f,021.3,M,011.6,F",
    "SDDPT,2.68,0.40,100.0",
    "SDDBS,070.0,f,021.3,M,011.6,F",
    "IIMTW,016.5,C",
    "WIMDA,29.9212,I,1.0132,B,17.4,C,16.1,C,72.5,8.1,12.4,C,282.0,T,267.0,M,18.4,N,9.5,M",
    "IIXDR,A,-21.5,D,HEEL,A,2.5,D,PITCH,P,1.0132,B,BARO",
    "TIROT,-30.0,A",
    "IIRSA,1.0,A,2.0,A",
    "VWVLW,4512.3,N,12.75,N",
};

const std::vector<std::string> kAbsurd = {"",
                                          " ",
                                          "-",
                                          ".",
                                          "-1",
                                          "-0.0",
                                          "nan",
                                          "NaN",
                                          "inf",
                                          "-inf",
                                          "1e308",
                                          "-1e308",
                                          "0x7FF",
                                          "32767",
                                          "-32768",
                                          "99999999999999999999",
                                          "-99999999999999999999",
                                          std::string(900, '9'),
                                          std::string("0.").append(800, '0').append("1"),
                                          "1.2.3",
                                          "--1",
                                          "+5",
                                          "359.999999999",
                                          "360",
                                          "360.0001",
                                          "361",
                                          "-180.5",
                                          "A",
                                          "V",
                                          "N",
                                          "000000",
                                          "999999",
                                          "310299",
                                          "24:00",
                                          std::string(3, '\x7E')};

/// The same sentence with one field replaced.
std::string withField(const std::string& body, std::size_t field, const std::string& text) {
    std::size_t start = 0;
    for (std::size_t count = 0; count <= field; ++count) {
        start = body.find(',', start);
        if (start == std::string::npos) return {};
        ++start;
    }
    const std::size_t end = std::min(body.find(',', start), body.size());
    return body.substr(0, start) + text + body.substr(end);
}

class HostileLines : public FeedTest {
  protected:
    void expectOnlyPlausibleValues() const {
        for (const auto& [key, written] : sink.values)
            ASSERT_TRUE(isPlausible(key.second, written)) << "channel " << key.second << ": " << written;
    }
};

TEST_F(HostileLines, EveryFieldMayHoldAnything) {
    sink.variation = 7.0;
    for (const std::string& body : kGood)
        for (const std::string& absurd : kAbsurd)
            for (std::size_t field = 0;; ++field) {
                const std::string changed = withField(body, field, absurd);
                if (changed.empty()) break;
                feedBody(changed);
                expectOnlyPlausibleValues();
                if (HasFatalFailure()) FAIL() << changed.substr(0, 100);
            }
    EXPECT_GT(feed.counts().written, 10'000U);
    EXPECT_EQ(feed.counts().damagedLines(), 0U);
}

TEST_F(HostileLines, EmptiedFieldNeverBecomesZero) {
    for (const std::string& body : kGood)
        for (std::size_t field = 0;; ++field) {
            const std::string changed = withField(body, field, "");
            if (changed.empty()) break;
            sink.values.clear();
            feedBody(changed);
            for (const auto& [key, written] : sink.values) EXPECT_NE(written, 0.0) << changed << " " << key.second;
        }
}

TEST_F(HostileLines, RandomBytesAreSurvived) {
    std::mt19937 random(1);
    std::string bytes(192'000, '\0');
    constexpr std::string_view kLikely = "$!*,.0123456789ABCDEFGHRMCVTGLNW\r\n\n\n";
    for (char& byte : bytes)
        byte = random() % 8 == 0 ? static_cast<char>(random() % 256) : kLikely[random() % kLikely.size()];
    nmea::LineSplitter splitter;
    std::string_view rest = bytes;
    while (const auto line = splitter.next(rest)) feed.take(*line);
    EXPECT_GT(feed.counts().lines, 1000U);
    expectOnlyPlausibleValues();
}

TEST_F(HostileLines, EverySentenceCutAnywhereIsSurvived) {
    for (const std::string& body : kGood)
        for (std::size_t length = 1; length < body.size(); ++length) {
            feedBody(body.substr(0, length)); // with a checksum that fits, as if the sender itself had cut it
            expectOnlyPlausibleValues();
        }
}

TEST_F(HostileLines, MebibyteLineIsOneDamagedLine) {
    nmea::LineSplitter splitter;
    const std::string bytes = std::string("$IIMTW,").append(1 << 20, '1').append(",C*00\n$IIMTW,016.5,C*14\n");
    std::string_view rest = bytes;
    while (const auto line = splitter.next(rest)) feed.take(*line);
    EXPECT_EQ(feed.counts().lines, 2U);
    EXPECT_EQ(feed.counts().of(nmea::LineKind::TooLong), 1U);
}

TEST_F(HostileLines, NamesOfUnknownSentencesDoNotGrowWithoutEnd) {
    for (int index = 0; index < 10'000; ++index) feedBody(std::string("P").append(std::to_string(index)).append(",1"));
    EXPECT_EQ(feed.counts().unknown.size(), FeedCounts::kNamesKept);
    EXPECT_EQ(feed.counts().otherUnknown, 10'000 - FeedCounts::kNamesKept);
}

} // namespace
} // namespace tallowmere::feed

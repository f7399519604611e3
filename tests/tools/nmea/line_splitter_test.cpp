#include "tools/nmea/line_splitter.hpp"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace tallowmere::nmea {
namespace {

using testing::ElementsAre;

std::vector<std::string> linesOf(std::string_view stream, std::size_t pieceSize) {
    LineSplitter splitter;
    std::vector<std::string> lines;
    const auto add = [&](const Line& line) {
        lines.push_back(std::to_string(line.number) + ":" + std::string(line.text) + (line.tooLong ? "+" : ""));
    };
    while (!stream.empty()) {
        std::string_view piece = stream.substr(0, pieceSize);
        stream.remove_prefix(piece.size());
        while (const auto line = splitter.next(piece)) add(*line);
    }
    if (const auto line = splitter.finish()) add(*line);
    return lines;
}

TEST(LineSplitter, EveryPieceSizeGivesTheSameLines) {
    const std::string stream = "one\ntwo\r\n\r\nfour\rfive\r\r\nseven\n\rnine\n\n\nlast";
    for (std::size_t size = 1; size <= stream.size(); ++size)
        EXPECT_THAT(linesOf(stream, size),
                    ElementsAre("1:one", "2:two", "4:four", "5:five", "7:seven", "9:nine", "12:last"))
            << size;
}

TEST(LineSplitter, EmptyStreamHasNoLine) {
    EXPECT_THAT(linesOf("", 1), ElementsAre());
    EXPECT_THAT(linesOf("\n\r\n\r", 1), ElementsAre());
}

TEST(LineSplitter, LongestLineIsWholeAndOneMoreIsCut) {
    const std::string longest(kLongestLine, 'x');
    EXPECT_THAT(linesOf(longest + "\n" + longest + "y\nnext\n", 100),
                ElementsAre("1:" + longest, "2:" + longest + "+", "3:next"));
    EXPECT_THAT(linesOf(longest + "y", 4096), ElementsAre("1:" + longest + "+"));
}

TEST(LineSplitter, MebibyteWithoutLineEndIsOneCutLine) {
    const auto lines = linesOf(std::string(1 << 20, '$') + "\n$A\n", 4096);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].size(), kLongestLine + 3);
    EXPECT_EQ(lines[1], "2:$A");
}

TEST(LineSplitter, NulBytesAreBytesOfTheLine) {
    EXPECT_THAT(linesOf(std::string_view("a\0b\n", 4), 2), ElementsAre(std::string("1:a\0b", 5)));
}

} // namespace
} // namespace tallowmere::nmea

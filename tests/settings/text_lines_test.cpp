#include "settings/text_lines.hpp"

#include <gmock/gmock.h>

#include <cstdint>
#include <string>
#include <vector>

namespace tallowmere::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Gives a text in portions of a given size.
class Portions final : public platform::FileReader {
  public:
    Portions(std::string text, std::size_t portion) : text_(std::move(text)), portion_(portion) {}
    [[nodiscard]] std::size_t read(std::span<char> buffer) noexcept override {
        const std::size_t count = std::min({buffer.size(), portion_, text_.size() - position_});
        std::copy_n(text_.data() + position_, count, buffer.data());
        position_ += count;
        return count;
    }

  private:
    std::string text_;
    std::size_t portion_;
    std::size_t position_ = 0;
};

std::vector<std::string> linesOf(const std::string& text, std::size_t portion = 4096) {
    Portions file(text, portion);
    std::vector<std::string> lines;
    forEachLine(file, [&](std::string_view line) { lines.emplace_back(line); });
    return lines;
}

TEST(TextLines, EmptyFileHasNone) {
    EXPECT_THAT(linesOf(""), IsEmpty());
}

TEST(TextLines, EndAtTheLineFeed) {
    EXPECT_THAT(linesOf("a\nb\n"), ElementsAre("a", "b"));
    EXPECT_THAT(linesOf("\n\na\n"), ElementsAre("", "", "a"));
}

TEST(TextLines, LastLineMayLackItsLineFeed) {
    EXPECT_THAT(linesOf("a\nb"), ElementsAre("a", "b"));
}

TEST(TextLines, OtherControlsAreBytesLikeAnyOther) {
    EXPECT_THAT(linesOf(std::string("a\r\n\x1A\0b\n", 7)), ElementsAre("a\r", std::string("\x1A\0b", 3)));
}

TEST(TextLines, AreTheSameInPortionsOfAnySize) {
    const std::string text = "first\n\nthird line\nlast";
    for (std::size_t portion = 1; portion < 25; ++portion)
        EXPECT_THAT(linesOf(text, portion), ElementsAre("first", "", "third line", "last")) << portion;
}

TEST(TextLines, BeyondTheLargestTextAreNotRead) {
    /// Never ends.
    class Endless final : public platform::FileReader {
      public:
        [[nodiscard]] std::size_t read(std::span<char> buffer) noexcept override {
            std::ranges::fill(buffer, '\n');
            return buffer.size();
        }
    };
    Endless file;
    std::size_t lines = 0;
    forEachLine(file, [&](std::string_view) { ++lines; });
    EXPECT_EQ(lines, kLargestText);
}

TEST(TextLines, OfAbsurdLengthAreCut) {
    const std::string text = std::string(kLongestLine, 'x') + "lost\nnext\n" + std::string(5'000'000, 'y');
    EXPECT_THAT(linesOf(text), ElementsAre(std::string(kLongestLine, 'x'), "next", std::string(kLongestLine, 'y')));
}

} // namespace
} // namespace tallowmere::test

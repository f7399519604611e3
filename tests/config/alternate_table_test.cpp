#include "core/config/alternate_table.hpp"
#include "tests/support/new_section.hpp"

#include <array>
#include <random>

namespace tallowmere::test {
namespace {

using Cells = std::array<std::int32_t, 9>;
constexpr std::int32_t kNone = 32767;
constexpr Cells kEmpty{kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone, kNone};
constexpr Cells kOneToNine{1, 2, 3, 4, 5, 6, 7, 8, 9};

class AlternateTableFile : public NewSection {
  protected:
    void read(const std::string& text) {
        machine.addFile(u"C:\\ProgramData\\Tallowmere\\config\\alternate.csv", text);
        readAlternateTable(context);
    }
    Cells row(std::size_t index) {
        Cells cells{};
        std::copy_n(area->alternates.cells[index], cells.size(), cells.begin());
        return cells;
    }
    void expectRow0(const std::string& text, const Cells& expected) {
        read(text);
        EXPECT_EQ(row(0), expected) << text;
        for (std::size_t index = 1; index < 10; ++index) EXPECT_EQ(row(index), kEmpty) << text;
    }
};

TEST_F(AlternateTableFile, MissingFileLeavesEveryCellEmpty) {
    for (auto& cells : area->alternates.cells)
        for (std::int32_t& cell : cells) cell = 5;
    readAlternateTable(context);
    for (std::size_t index = 0; index < 10; ++index) EXPECT_EQ(row(index), kEmpty);
}

TEST_F(AlternateTableFile, WithoutSectionNothingIsAsked) {
    readAlternateTable(withoutSection);
    EXPECT_TRUE(machine.trace.empty());
}

TEST_F(AlternateTableFile, LineWithCommasFillsItsRow) {
    expectRow0("0,1,2,3,4,5,6,7,8,9\n", kOneToNine);
}

TEST_F(AlternateTableFile, TabsAndBlanksSeparateToo) {
    expectRow0("0\t1\t2\t3\t4\t5\t6\t7\t8\t9\n", kOneToNine);
    expectRow0("0 1 2 3 4 5 6 7 8 9\n", kOneToNine);
    expectRow0(" 0  \t 1 2 3 4\v5\f6 7 8 9\n", kOneToNine);
}

TEST_F(AlternateTableFile, SignAloneSeparatesWhereWhiteSpaceMay) {
    expectRow0("0+1+2+3+4+5+6+7+8+9\n", kOneToNine);
    expectRow0("0-1-2-3-4+5-6-7-8-9\n", {kNone, kNone, kNone, kNone, 5, kNone, kNone, kNone, kNone});
}

TEST_F(AlternateTableFile, WhiteSpaceMayFollowACommaButNotPrecedeIt) {
    expectRow0("0, 1,\t2, 3,4,5,6,7,8,9\n", kOneToNine);
    expectRow0("0 ,1,2,3,4,5,6,7,8,9\n", kEmpty);
    expectRow0("0,1,2,3,4,5 ,6,7,8,9\n", kEmpty);
}

TEST_F(AlternateTableFile, CommasAndWhiteSpaceDoNotMix) {
    expectRow0("0,1 2 3 4 5 6 7 8 9\n", kEmpty);
}

TEST_F(AlternateTableFile, TextBehindTheTenthFieldIsIgnored) {
    expectRow0("0,1,2,3,4,5,6,7,8,9,10,11 and more\n", kOneToNine);
    expectRow0("0 1 2 3 4 5 6 7 8 9 10\n", kOneToNine);
}

TEST_F(AlternateTableFile, SevenChannelsAreTooFew) {
    expectRow0("0,1,2,3,4,5,6,7\n", kEmpty);
    expectRow0("0 1 2 3 4 5 6 7\n", kEmpty);
}

TEST_F(AlternateTableFile, EightChannelsFillEightColumns) {
    expectRow0("0,1,2,3,4,5,6,7,8\n", {1, 2, 3, 4, 5, 6, 7, 8, kNone});
    expectRow0("0,1,2,3,4,5,6,7,8,\n", {1, 2, 3, 4, 5, 6, 7, 8, kNone});
    expectRow0("0,1,2,3,4,5,6,7,8,x\n", {1, 2, 3, 4, 5, 6, 7, 8, kNone});
}

// KEPT: the ninth place is not emptied between lines.
TEST_F(AlternateTableFile, EightChannelsTakeTheNinthFromAnEarlierLine) {
    read("0,1,2,3,4,5,6,7,8,9\n3,10,11,12,13,14,15,16,17\n");
    EXPECT_EQ(row(3), (Cells{10, 11, 12, 13, 14, 15, 16, 17, 9}));
}

TEST_F(AlternateTableFile, TheNinthMayComeFromALineSkippedForItsRow) {
    read("10,1,2,3,4,5,6,7,8,99\n3,10,11,12,13,14,15,16,17\n");
    EXPECT_EQ(row(3), (Cells{10, 11, 12, 13, 14, 15, 16, 17, 99}));
}

TEST_F(AlternateTableFile, TheNinthMayBeNoChannel) {
    read("0,1,2,3,4,5,6,7,8,9\n1,1,2,3,4,5,6,7,8,414\n3,10,11,12,13,14,15,16,17\n");
    EXPECT_EQ(row(3), (Cells{10, 11, 12, 13, 14, 15, 16, 17, kNone}));
}

TEST_F(AlternateTableFile, NothingIsCarriedFromOneReadingToTheNext) {
    read("0,1,2,3,4,5,6,7,8,9\n");
    expectRow0("0,1,2,3,4,5,6,7,8\n", {1, 2, 3, 4, 5, 6, 7, 8, kNone});
}

TEST_F(AlternateTableFile, CommentsAndEmptyLinesAreSkipped) {
    read("!0,1,2,3,4,5,6,7,8,9\n\n\r\n!\nAlternating channels\n1,1,2,3,4,5,6,7,8,9\n");
    EXPECT_EQ(row(0), kEmpty);
    EXPECT_EQ(row(1), kOneToNine);
}

TEST_F(AlternateTableFile, ExclamationMarkCountsInFrontOnly) {
    expectRow0(" !0,1,2,3,4,5,6,7,8,9\n", kEmpty);
    expectRow0("0,1,2,3,4,5,6,7,8,9 !\n", kOneToNine);
}

TEST_F(AlternateTableFile, RowsFrom10OnAreSkipped) {
    for (const char* text : {"10,1,2,3,4,5,6,7,8,9\n", "-1,1,2,3,4,5,6,7,8,9\n",
                             "99999999999999999999,1,2,3,4,5,6,7,8,9\n", "-99999999999999999999,1,2,3,4,5,6,7,8,9\n"})
        expectRow0(text, kEmpty);
    read("9,1,2,3,4,5,6,7,8,9\n");
    EXPECT_EQ(row(9), kOneToNine);
}

TEST_F(AlternateTableFile, RowNumberKeepsItsLow32Bits) {
    expectRow0("4294967296,1,2,3,4,5,6,7,8,9\n", kOneToNine);
}

TEST_F(AlternateTableFile, CellsWithoutAChannelStayAsTheyAre) {
    expectRow0("0,0,414,-5,32767,1,413,-1,1000,9\n", {kNone, kNone, kNone, kNone, 1, 413, kNone, kNone, 9});
    expectRow0("0,1,2,3,4,5,6,7,8,9\n0,0,414,-5,32767,11,413,-1,1000,19\n", {1, 2, 3, 4, 11, 413, 7, 8, 19});
}

TEST_F(AlternateTableFile, ChannelsKeepTheirLow16Bits) {
    expectRow0("0,65537,-65531,131075,4,5,6,7,8,99999999999999999999\n", {1, 5, 3, 4, 5, 6, 7, 8, kNone});
}

TEST_F(AlternateTableFile, CarriageReturnAndMissingLastLineFeedAreHarmless) {
    expectRow0("0,1,2,3,4,5,6,7,8,9\r\n", kOneToNine);
    expectRow0("0,1,2,3,4,5,6,7,8,9", kOneToNine);
    expectRow0("0,1,2,3,4,5,6,7,8\r\n", {1, 2, 3, 4, 5, 6, 7, 8, kNone});
}

TEST_F(AlternateTableFile, ControlZAndNulAreBytesLikeAnyOther) {
    using namespace std::string_literals;
    read("\x1A\n0,1,2,3,4,5,6,7,8,9\n1,1,2,3\0,4,5,6,7,8,9\n2,1,2,3,4,5,6,7,8,9\x1A\n"s);
    EXPECT_EQ(row(0), kOneToNine);
    EXPECT_EQ(row(1), kEmpty);
    EXPECT_EQ(row(2), kOneToNine);
}

TEST_F(AlternateTableFile, LaterLineOfARowOverwritesTheEarlier) {
    expectRow0("0,9,8,7,6,5,4,3,2,1\n0,1,2,3,4,5,6,7,8,9\n", kOneToNine);
}

TEST_F(AlternateTableFile, LineOfAbsurdLengthIsCut) {
    const std::string blanks(1'000'000, ' ');
    read("0,1,2,3,4,5,6,7,8,9" + blanks + "\n1" + blanks + "1 2 3 4 5 6 7 8 9\n2,1,2,3,4,5,6,7,8,9\n");
    EXPECT_EQ(row(0), kOneToNine);
    EXPECT_EQ(row(1), kEmpty);
    EXPECT_EQ(row(2), kOneToNine);
}

TEST_F(AlternateTableFile, FailingStepsLeaveTheTableEmpty) {
    for (const Step step : {Step::OpenFile, Step::ReadFile}) {
        machine.failOnce(step);
        expectRow0("0,1,2,3,4,5,6,7,8,9\n", kEmpty);
    }
}

TEST_F(AlternateTableFile, NothingBeyondTheTableIsTouchedWhateverTheBytes) {
    const auto before = std::make_unique<SharedArea>(*area);
    std::mt19937 random(7);
    constexpr std::string_view alphabet = "0123456789,,,,  \t-+!\r\n\n";
    for (int round = 0; round < 300; ++round) {
        std::string text(random() % 2000, ' ');
        for (char& c : text)
            c = round % 10 == 0 ? static_cast<char>(random() % 256) : alphabet[random() % alphabet.size()];
        read(text);
        for (const auto& cells : area->alternates.cells)
            for (const std::int32_t cell : cells) ASSERT_TRUE(cell == kNone || (cell >= 1 && cell <= 413)) << text;
        area->alternates = before->alternates;
        std::memcpy(before->dataFolder, area->dataFolder, sizeof area->dataFolder);
        ASSERT_TRUE(sameBytes(*before)) << text;
    }
}

} // namespace
} // namespace tallowmere::test

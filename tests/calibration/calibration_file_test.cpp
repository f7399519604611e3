#include "calibration/calibration_file.hpp"
#include "tests/calibration/calibration_fixture.hpp"

#include <random>
#include <sstream>

namespace tallowmere::test {
namespace {

constexpr char16_t kPath[] = u"C:\\Sail\\table.txt";
using namespace std::string_literals;

class CalibrationFile : public ::testing::Test {
  protected:
    void read(const std::string& text) {
        machine.addFile(kPath, text);
        readCalibrationFile(platform, kPath, table);
    }
    /// "row: x=y x=y" a line, a dash for NO_VALUE.
    [[nodiscard]] std::string rows() const {
        std::ostringstream text;
        const auto number = [&](double value) -> std::ostream& {
            return value == NO_VALUE ? text << '-' : text << value;
        };
        for (const CurveRow& row : table.rows) {
            text << (text.tellp() > 0 ? "; " : "");
            number(row.rowValue) << ':';
            for (const CurveKnot& knot : row.knots) {
                text << ' ';
                number(knot.x) << '=';
                number(knot.y);
                EXPECT_EQ(knot.y2, NO_VALUE);
            }
            EXPECT_EQ(row.dirty, 1);
        }
        return text.str();
    }
    [[nodiscard]] std::string columns() const {
        std::ostringstream text;
        for (const CurveKnot& column : table.columns) {
            text << (text.tellp() > 0 ? " " : "") << column.y;
            EXPECT_EQ(column.x, NO_VALUE);
            EXPECT_EQ(column.y2, NO_VALUE);
        }
        return text.str();
    }
    void expectRows(const std::string& text, const std::string& expected) {
        read(text);
        EXPECT_EQ(rows(), expected) << text.substr(0, 200);
    }

    MemoryMachine machine;
    MemoryPlatform platform{machine};
    CalibrationTable table;
};

TEST_F(CalibrationFile, AscendingFirstLineIsAHeader) {
    expectRows("0 45 90 135 180\n0 1 2 3 4 5\n", "0: 0=1 45=2 90=3 135=4 180=5");
    EXPECT_EQ(columns(), "0 45 90 135 180");
    EXPECT_EQ(table.sharedColumns, 1);
}

TEST_F(CalibrationFile, OtherFirstLineIsARowOfPairs) {
    table.sharedColumns = 1;
    expectRows("5 3 1\n", "5: 3=1");
    EXPECT_EQ(columns(), "");
    EXPECT_EQ(table.sharedColumns, 0);
}

TEST_F(CalibrationFile, EqualNumbersDoNotAscend) {
    expectRows("0 0 5\n1 2 3\n", "0: 0=5; 1: 2=3");
}

TEST_F(CalibrationFile, SingleNumberAscends) {
    expectRows("7\n3 1.5 9\n", "3: 7=1.5 -=9");
    EXPECT_EQ(columns(), "7");
}

TEST_F(CalibrationFile, MostNegativeNumberAloneDoesNotAscend) {
    expectRows("-1.7976931348623157e308\n4 5 6\n", "4: 5=6");
    EXPECT_EQ(table.sharedColumns, 0);
}

TEST_F(CalibrationFile, HeaderEndsAtItsFirstWord) {
    expectRows("0 10 knots 5 6\n1 2 3 4\n", "1: 0=2 10=3 -=4");
    EXPECT_EQ(columns(), "0 10");
}

TEST_F(CalibrationFile, WordsBehindAHeadersNumbersDoNotCount) {
    expectRows("5 x 3 1\n2 4\n", "2: 5=4");
}

TEST_F(CalibrationFile, SeparatorsMixAndRunTogether) {
    const std::string expected = "0: 0=1 45=2 90=3; 5: 0=4 45=5 90=6";
    expectRows("0 45 90\n0 1 2 3\n5 4 5 6\n", expected);
    expectRows("0,45,90\n0,1,2,3\n5,4,5,6\n", expected);
    expectRows("0\t45\t90\n0\t1\t2\t3\n5\t4\t5\t6\n", expected);
    expectRows("0,,45 , 90\n0\t ,1,,,2,3,\n5, 4, 5, 6 ,\n", expected);
}

TEST_F(CalibrationFile, LeadingSeparatorsAreSkipped) {
    expectRows(" 0 45\n,,0 1 2\n\t ,5,3,4\n", "0: 0=1 45=2; 5: 0=3 45=4");
}

TEST_F(CalibrationFile, SemicolonSeparatesNothing) {
    expectRows("0 45\n0;9 1 2\n", "0: 0=1 45=2");
}

TEST_F(CalibrationFile, LinesWithoutANumberInFrontAreIgnored) {
    expectRows("! AWA calibration\n\nknots of 2024\n   \n,\t,\nInfo 5\nnan 1\n0x10 3\n0 45\n# 1\n1e400 5\n0 1 2\nend\n",
               "0: 0=1 45=2");
}

TEST_F(CalibrationFile, FieldsConvertFromTheirFront) {
    expectRows("0deg 45deg\n1e 2kt +3.5e0\n", "1: 0=2 45=3.5");
}

TEST_F(CalibrationFile, BadFieldEndsItsLine) {
    expectRows("0 45 90\n0 1 x 3\n5 4 inf 6\n", "0: 0=1; 5: 0=4");
    expectRows("9 3 1 4 x 5 6\n", "9: 3=1");
    expectRows("9 3 1 x 4 5 6\n", "9: 3=1");
}

TEST_F(CalibrationFile, PositionWithoutAValueEndsItsLine) {
    expectRows("9 3 1 4 2 5\n", "9: 3=1 4=2");
}

TEST_F(CalibrationFile, RowWithoutKnotsIsDropped) {
    expectRows("0 45\n1\n2 x\n3 7\n", "3: 0=7");
    expectRows("9 3\n8 2 1\n", "8: 2=1");
    EXPECT_EQ(table.sharedColumns, 0); // the dropped line decided all the same
}

TEST_F(CalibrationFile, RowsAreSortedByValue) {
    expectRows("0 45\n10 1 2\n-5 3 4\n0 5 6\n", "-5: 0=3 45=4; 0: 0=5 45=6; 10: 0=1 45=2");
}

TEST_F(CalibrationFile, EqualRowsKeepTheirOrder) {
    expectRows("0\n5 1\n3 0\n5 2\n5 3\n", "3: 0=0; 5: 0=1; 5: 0=2; 5: 0=3");
}

TEST_F(CalibrationFile, KnotsOfPairsKeepTheOrderOfTheFile) {
    expectRows("9 5 1 3 2 4 3\n", "9: 5=1 3=2 4=3");
}

TEST_F(CalibrationFile, KnotsBeyondTheHeaderHaveNoPosition) {
    expectRows("0 45\n1 2 3 4 5\n", "1: 0=2 45=3 -=4 -=5");
}

TEST_F(CalibrationFile, FewerValuesThanColumnsMakeAShorterRow) {
    expectRows("0 45 90\n1 2\n", "1: 0=2");
}

TEST_F(CalibrationFile, NoValueIsANumberLikeAnyOther) {
    expectRows("0 45 90\n32767 1 32767 3\n", "-: 0=1 45=- 90=3");
}

TEST_F(CalibrationFile, LineEndsAreOfAnyKind) {
    expectRows("0 45\r\n0 1 2\r\n", "0: 0=1 45=2");
    expectRows("0 45\r\n0 1 2 \r\n", "0: 0=1 45=2");
    expectRows("0 45\n0 1 2", "0: 0=1 45=2");
    expectRows("0 45\r0 1 2\r", "0: 45=1"); // no line feed: all one line, in which "45\r0" is 45
}

// Nothing strips it: its line counts as a heading.
TEST_F(CalibrationFile, ByteOrderMarkHidesItsLine) {
    expectRows("\xEF\xBB\xBF"s + "0 45\n3 2 1\n", "3: 2=1");
    expectRows("\xEF\xBB\xBF"s + "Bsp\n0 45\n3 2 1\n", "3: 0=2 45=1");
}

TEST_F(CalibrationFile, BinaryBytesAreIgnored) {
    expectRows("\0\x01\xFF\n0 45\n\xC3\x28 5\n0 1\0 9 2\n\x1A\n5 3 4\n"s, "0: 0=1 45=9 -=2; 5: 0=3 45=4");
}

TEST_F(CalibrationFile, HeaderAloneMakesNoRows) {
    expectRows("0 45 90\n", "");
    EXPECT_EQ(columns(), "0 45 90");
}

TEST_F(CalibrationFile, EmptyFileEmptiesTheTable) {
    read("0 45\n0 1 2\n");
    table.changed = 1;
    expectRows("", "");
    EXPECT_EQ(columns(), "");
    EXPECT_EQ(table.changed, 0);
}

TEST_F(CalibrationFile, MissingFileEmptiesTheTable) {
    read("0 45\n0 1 2\n");
    table.changed = 1;
    table.linear = 1;
    readCalibrationFile(platform, u"C:\\Sail\\none.txt", table);
    EXPECT_TRUE(table.rows.empty());
    EXPECT_TRUE(table.columns.empty());
    EXPECT_EQ(table.changed, 1);
    EXPECT_EQ(table.linear, 1);
    readCalibrationFile(platform, u"", table);
    EXPECT_TRUE(table.rows.empty());
}

TEST_F(CalibrationFile, ReadingReplacesEverythingButStraightness) {
    read("0 45\n0 1 2\n");
    table.linear = 1;
    table.changed = 1;
    expectRows("9 3 1\n", "9: 3=1");
    EXPECT_EQ(columns(), "");
    EXPECT_EQ(table.linear, 1);
    EXPECT_EQ(table.changed, 0);
}

TEST_F(CalibrationFile, FailingReadKeepsWhatCameBefore) {
    machine.failOnce(Step::ReadFile, 2); // each takes 4096 bytes
    expectRows("0 45\n0 1 2\n" + std::string(4096, ' ') + "\n5 3 4\n", "0: 0=1 45=2");
    machine.failOnce(Step::ReadFile, 1);
    expectRows("0 45\n0 1 2\n", "");
}

TEST_F(CalibrationFile, MoreKnotsAndRowsThanTheLimitsAreDropped) {
    std::string header;
    std::string row;
    for (std::size_t k = 0; k < kMostKnots + 300; ++k) {
        header += std::to_string(k) + ' ';
        row += " 2";
    }
    std::string text = header + '\n';
    for (std::size_t j = 0; j < kMostRows + 50; ++j) text += std::to_string(j) + row + '\n';
    read(text);
    EXPECT_EQ(table.columns.size(), kMostKnots);
    ASSERT_EQ(table.rows.size(), kMostRows);
    for (const CurveRow& each : table.rows) EXPECT_EQ(each.knots.size(), kMostKnots);
    EXPECT_EQ(table.rows.back().rowValue, static_cast<double>(kMostRows - 1));
}

TEST_F(CalibrationFile, NumbersBeyondTheLimitStillDecideTheLayout) {
    std::string text;
    for (std::size_t k = 0; k < kMostKnots + 9; ++k) text += std::to_string(k) + ' ';
    read(text + "0\n");
    EXPECT_EQ(table.sharedColumns, 0);
    EXPECT_TRUE(table.columns.empty());
}

TEST_F(CalibrationFile, LineOfAbsurdLengthIsCut) {
    expectRows("0 45\n0" + std::string(3'000'000, ' ') + "1 2\n" + std::string(3'000'000, '7') + " 1\n5 3 4\n",
               "5: 0=3 45=4");
}

TEST_F(CalibrationFile, AnyBytesGiveFiniteNumbersInSortedRows) {
    std::mt19937 random(5);
    constexpr std::string_view alphabet = "0123456789  ,\t.eE+-\r\n\nx";
    for (int round = 0; round < 500; ++round) {
        std::string text(random() % 3000, ' ');
        for (char& c : text)
            c = round % 10 == 0 ? static_cast<char>(random() % 256) : alphabet[random() % alphabet.size()];
        read(text);
        ASSERT_LE(table.rows.size(), kMostRows);
        double previous = -kInfinity;
        for (CurveRow& row : table.rows) {
            ASSERT_FALSE(row.knots.empty());
            ASSERT_TRUE(std::isfinite(row.rowValue) && row.rowValue >= previous);
            previous = row.rowValue;
            for (const CurveKnot& knot : row.knots) ASSERT_TRUE(std::isfinite(knot.x) && std::isfinite(knot.y));
        }
        double y = 0.0;
        EvalTable(table, 12.5, 7.5, y);
    }
}

} // namespace
} // namespace tallowmere::test

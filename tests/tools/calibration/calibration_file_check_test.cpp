#include "tests/tools/calibration/calibration_command_fixture.hpp"

namespace tallowmere::test {
namespace {

class FileCheck : public CalibrationCommandTest {
  protected:
    /// The problems of this content as the file of item "Bsp", which has two inputs.
    std::string problems(std::string text) {
        putItem(u"Bsp", std::move(text));
        return check();
    }
};

constexpr char kGap[] = "beside it a straight curve has no value and a smooth one keeps its neighbour's\n";

TEST_F(FileCheck, NothingAtAllIsNoProblem) {
    const auto files = machine.files;
    EXPECT_EQ(check(), "");
    EXPECT_FALSE(sectionExists());
    EXPECT_EQ(machine.files, files); // no folder was made
}

TEST_F(FileCheck, CleanFilesAreNoProblem) {
    EXPECT_EQ(problems("! a comment\n# 5 1 2 3\nspeed against heel\n5, 10\r\n0\t1.5\t-2\n\n10 1e0 +2.5"), "");
    EXPECT_EQ(problems("5 1 7 2 1.5 3 1\n10 1 2 3 4\n"), ""); // pairs
}

TEST_F(FileCheck, DescendingKnotsAreTold) {
    EXPECT_EQ(problems("5 3 1 2 1.5 1 7\n10 1 2 3 4\n"),
              "ZAN_CAL_Bsp.txt:1: its positions do not ascend; descending ones give the same curve\n");
}

TEST_F(FileCheck, ARowValueThatMeansNoneIsTold) {
    EXPECT_EQ(problems("5 10\n0 1 2\n32767 3 4\n"),
              "ZAN_CAL_Bsp.txt:3: its row value is 32767, which means none; sorted last, it sends every reading to "
              "the first row\n");
}

TEST_F(FileCheck, RowsOutOfOrderAreTold) {
    EXPECT_EQ(problems("5 10\n10 1 2\n0 1 2\n"), "ZAN_CAL_Bsp.txt:3: row 0 comes after row 10; the rows are sorted\n");
}

TEST_F(FileCheck, RowsTwiceAreTold) {
    EXPECT_EQ(problems("5 10\n10 1 2\n10 1 3\n"), "ZAN_CAL_Bsp.txt:3: row 10 was there already on line 2; both "
                                                  "stay, and which counts depends on the rows around them\n");
}

TEST_F(FileCheck, AFieldThatEndsItsLineIsTold) {
    EXPECT_EQ(problems("5 10\n10 1 2 # note\n"),
              "ZAN_CAL_Bsp.txt:2: field 4 \"#\" is no number; the line ends before it\n");
    EXPECT_EQ(problems("5 10\n10 1 n/a\n"),
              "ZAN_CAL_Bsp.txt:2: field 3 \"n/a\" is no number; the line ends before it\n"
              "ZAN_CAL_Bsp.txt:2: has 1 value for 2 columns; the row ends after its last value\n");
}

TEST_F(FileCheck, TextAfterANumberIsTold) {
    EXPECT_EQ(problems("5 10\n10 1kt 1e\n"),
              "ZAN_CAL_Bsp.txt:2: field 2 \"1kt\" has text after its number; it is read as 1\n"
              "ZAN_CAL_Bsp.txt:2: field 3 \"1e\" has text after its number; it is read as 1\n");
}

TEST_F(FileCheck, AHeaderThatDoesNotAscendIsTold) {
    EXPECT_THAT(problems("0 5 5 10\n10 1 2 3 4\n20 1 2 3 4\n"),
                ::testing::HasSubstr("ZAN_CAL_Bsp.txt:1: looks like a header, but 5 does not exceed 5; all lines are "
                                     "read as a row value and pairs of position and value\n"));
}

TEST_F(FileCheck, AHeaderWithANumberInItsCornerIsTold) {
    for (const char* file : {"0 0 45 90 135\n5 1 2 3 4\n10 4 5 6 7\n", "0 0 45 90\n0 1 2 3\n10 4 5 6\n"})
        EXPECT_THAT(problems(file), ::testing::HasSubstr(":1: looks like a header, but 0 does not exceed 0; all lines "
                                                         "are read as a row value and pairs"));
    EXPECT_THAT(problems("0 90 45\n0 1 2 3\n5 1 2\n"), ::testing::HasSubstr(":1: looks like a header"));
    EXPECT_EQ(problems("0 0 1 10 2\n10 0 2 10 3\n"), "");
    EXPECT_EQ(problems("0 0 1 5 6\n10 0 2 5 3\n"), "");
}

TEST_F(FileCheck, APositionThatLooksMissingIsAPosition) {
    EXPECT_EQ(problems("0 0 0 10 1 32767 5\n"),
              "ZAN_CAL_Bsp.txt:1: pair 3 has position 32767; it is a position like any other\n");
}

TEST_F(FileCheck, WhatLiesBeyondTheLimitIsTold) {
    std::string file = "0 5 10\n10 1 2 3\n";
    file.resize(std::size_t{16} << 20, '\n');
    EXPECT_EQ(problems(file), "");
    EXPECT_EQ(problems(file + "20 1 2 3\n"), "ZAN_CAL_Bsp.txt: is longer than 16 MiB; what lies beyond is ignored\n");
}

TEST_F(FileCheck, PairsTakenForColumnsAreTold) {
    EXPECT_THAT(
        problems("5 6 7 8 9\n10 6 7 8 9\n"),
        ::testing::StartsWith("ZAN_CAL_Bsp.txt:2: has 4 values for 5 columns; the row ends after its last value\n"
                              "ZAN_CAL_Bsp.txt:1: its numbers ascend, though all lines look like a row value and "
                              "pairs; it is taken for the header of columns\n"));
    EXPECT_THAT(problems("5 10 15\n10 10 16 20 26\n"),
                ::testing::HasSubstr("ZAN_CAL_Bsp.txt:1: its numbers ascend, though all lines look like"));
}

TEST_F(FileCheck, RowsOfAnotherLengthThanTheHeaderAreTold) {
    EXPECT_EQ(problems("0 5 10\n10 1 2 3\n"), "");
    EXPECT_EQ(problems("0 5 10\n10 1 2 3 4\n20\n"),
              "ZAN_CAL_Bsp.txt:2: has 4 values for 3 columns; the values beyond lie at position 32767\n"
              "ZAN_CAL_Bsp.txt:3: has a row value and nothing else; the row is dropped\n");
}

TEST_F(FileCheck, NoValueInsideARowIsTold) {
    EXPECT_EQ(problems("0 5 10\n10 1 32767 3\n"),
              std::string("ZAN_CAL_Bsp.txt:2: value 2 is 32767, which means none; ") + kGap);
    EXPECT_EQ(problems("10 3 2 4 32767 5 6\n"),
              std::string("ZAN_CAL_Bsp.txt:1: pair 2 has the value 32767, which means none; ") + kGap);
}

TEST_F(FileCheck, PairsOutOfOrderAreTold) {
    EXPECT_EQ(problems("10 1 2 5 6 3 4 7 8\n"), "ZAN_CAL_Bsp.txt:1: position 3 after 5 is out of order; they are not "
                                                "sorted, and the curve there is of no use\n");
    EXPECT_EQ(problems("10 1 2 1 6 3\n"),
              "ZAN_CAL_Bsp.txt:1: ends with position 3 without a value; the position is dropped\n"
              "ZAN_CAL_Bsp.txt:1: position 1 stands there twice; the curve has a jump or a gap there\n");
}

TEST_F(FileCheck, AByteOrderMarkThatHidesTheHeaderIsTold) {
    EXPECT_THAT(problems("\xEF\xBB\xBF"
                         "0 5 10\n10 5 2 3\n"),
                ::testing::StartsWith(
                    "ZAN_CAL_Bsp.txt:1: a byte order mark stands before the first number; the line is passed over\n"));
    EXPECT_EQ(problems("\xEF\xBB\xBF! comment\n0 5 10\n10 1 2 3\n"), "");
    EXPECT_THAT(problems(std::string("\xFF\xFE"
                                     "0\0 \0",
                                     6)),
                ::testing::HasSubstr("is UTF-16 text"));
}

TEST_F(FileCheck, ALabelThatHidesTheHeaderIsTold) {
    EXPECT_EQ(
        problems("heel 0 5 10\n0 5 10\n10 1 2 3\n"),
        "ZAN_CAL_Bsp.txt:1: its first field \"heel\" is no number, though numbers follow; the line is passed over\n");
    EXPECT_EQ(problems("0 5 10\n10 1 2 3\n1e999 1 2 3\n0x10 1 2 3\n"),
              "ZAN_CAL_Bsp.txt:3: its first field \"1e999\" is not read as a number; the line is passed over\n"
              "ZAN_CAL_Bsp.txt:4: its first field \"0x10\" is not read as a number; the line is passed over\n");
}

TEST_F(FileCheck, AnEmptyTableIsTold) {
    EXPECT_EQ(problems(""),
              "ZAN_CAL_Bsp.txt: has no line that begins with a number; the table is empty and gives no correction\n");
    EXPECT_EQ(problems("3.5\n"),
              "ZAN_CAL_Bsp.txt: has a header and no row below it; the table is empty and gives no correction\n");
}

TEST_F(FileCheck, TheLimitsAreTold) {
    std::string rows = "0 5\n";
    for (int row = 0; row < 257; ++row) rows += std::to_string(row) + " 1 2\n";
    EXPECT_EQ(problems(rows), "ZAN_CAL_Bsp.txt: has 257 rows; the first 256 are read\n");
    std::string pairs = "0";
    for (int k = 0; k < 513; ++k) pairs += " " + std::to_string(1000 + k) + " 1";
    EXPECT_EQ(problems(pairs), "ZAN_CAL_Bsp.txt:1: has more than 512 knots; those beyond are dropped\n");
    EXPECT_EQ(problems("0 5\n1 2 3" + std::string(65536, ' ') + "4\n"),
              "ZAN_CAL_Bsp.txt:2: the line is longer than 65536 bytes; what lies beyond is ignored\n");
}

TEST_F(FileCheck, SeveralRowsWithoutARowInputAreTold) {
    putItem(u"Hdg", "0 90\n0 1 2\n1 1 2\n");
    EXPECT_EQ(check(), "ZAN_CAL_Hdg.txt: has several rows, and its item no row input; the first row alone counts\n");
}

TEST_F(FileCheck, ACurveAlongASignedAngleWithoutARowInputIsTold) {
    const std::pair<std::string, std::string> items[] = {
        {"AwaOffset", "AWA"}, {"Heel", "Heel"}, {"Trim", "Trim"}, {"MastAngle", "MastAng"}, {"RudderAngle", "Rudder"}};
    for (const auto& [name, angle] : items) {
        const std::u16string item(name.begin(), name.end());
        putItem(item, "! degrees\n-20 0 20\n0 1 0 -1\n");
        EXPECT_EQ(check(), "ZAN_CAL_" + name + ".txt:3: has 3 values along " + angle +
                               ", an angle, and its item no row input; every angle is corrected by what the curve has "
                               "at 32767; give one value for all angles\n");
        putItem(item, "0 0 1 10 2\n"); // pairs
        EXPECT_THAT(check(), ::testing::HasSubstr(".txt:1: has 2 values along "));
        for (const char* fine : {"0\n0 1.5\n", "-20 0 20\n0 1.5 1.5 1.5\n", "0 0 1.5\n", "0 0 1.5 10 1.5\n"}) {
            putItem(item, fine);
            EXPECT_EQ(check(), "");
        }
    }
    putItem(u"Hdg", "0 90\n0 1 2\n"); // a bearing is looked up
    EXPECT_EQ(check(), "");
}

TEST_F(FileCheck, ACurveAlongASignedAngleIsToldOfTheRowThatCounts) {
    putItem(u"Heel", "-20 20\n5 1 2\n0 3 3\n");
    EXPECT_THAT(check(), ::testing::Not(::testing::HasSubstr("along Heel")));
    putItem(u"Heel", "-20 20\n5 1 1\n0 2 3\n");
    EXPECT_THAT(check(), ::testing::HasSubstr("ZAN_CAL_Heel.txt:3: has 2 values along Heel"));
}

TEST_F(FileCheck, SeveralValuesWithoutAnyInputAreTold) {
    putItem(u"Wind weight", "0 10\n0 5 6\n");
    EXPECT_EQ(check(), "ZAN_CAL_Wind weight.txt:2: has 2 values, and its item no input; the first one counts\n");
    putItem(u"Wind weight", "0\n0 5\n");
    EXPECT_EQ(check(), "");
    putItem(u"Brake", "0 1.5 3\n0 250 150 100\n"); // along ROT
    EXPECT_EQ(check(), "");
}

TEST_F(FileCheck, AMissingFileMattersWhenTheUserHasSwitchedTheItemOn) {
    machine.addDword(kCalibrationKey, u"CalUse_2", 1);
    EXPECT_EQ(check(),
              "ZAN_CAL_Bsp.txt: is missing, though \"Bsp\" is in use; the table is empty and gives no correction\n");
    machine.addDword(kCalibrationKey, u"CalUse_2", 0);
    EXPECT_EQ(check(), "");
}

TEST_F(FileCheck, OneItemOrOneFileIsCheckedByItself) {
    putItem(u"Bsp", "0 5 10\n10 1 x\n");
    putItem(u"Awa", "y 1 2 3\n");
    machine.addFile(u"D:\\mine.txt", "0 5\n9 1 2 \n8 1 2\n");
    EXPECT_EQ(run({"check", "BSP"}).code, 1);
    EXPECT_EQ(run({"check", "2"}).out, run({"check", "bsp"}).out);
    EXPECT_THAT(run({"check", "2"}).out, ::testing::Not(::testing::HasSubstr("Awa")));
    EXPECT_EQ(run({"check", "Hdg"}).code, 0);
    EXPECT_EQ(run({"check", "D:\\mine.txt"}).out, "D:\\mine.txt:3: row 8 comes after row 9; the rows are sorted\n");
    EXPECT_EQ(run({"check", "D:\\mine.txt"}).err, "tallowmere: 1 problem found\n");
    EXPECT_EQ(run({"check", "D:\\other.txt"}).code, 2);
    EXPECT_THAT(run({"check", "wind"}).err, ::testing::HasSubstr("Wind weight"));
}

TEST_F(FileCheck, HostileFilesGiveHarmlessText) {
    std::uint64_t seed = 1;
    for (int round = 0; round < 30; ++round) {
        std::string noise(5000, '\0');
        for (char& c : noise) {
            seed = seed * 6364136223846793005U + 1442695040888963407U;
            c = round % 2 == 0 ? static_cast<char>(seed >> 56) : "0123456789.-+e \n,\tx"[(seed >> 40) % 19];
        }
        const std::string text = problems(noise);
        EXPECT_LT(std::ranges::count(text, '\n'), 110);
        EXPECT_EQ(run({"calibration", "list"}).code, 0);
        (void)run({"calibration", "plot", "Bsp"});
    }
}

} // namespace
} // namespace tallowmere::test

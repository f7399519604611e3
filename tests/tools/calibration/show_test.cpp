#include "tests/tools/calibration/calibration_command_fixture.hpp"

#include <cstring>

namespace tallowmere::test {
namespace {

using ::testing::HasSubstr;

class ShowCalibration : public CalibrationCommandTest {};

TEST_F(ShowCalibration, ListHasEveryItem) {
    putItem(u"Bsp", "0 10\n0 0 1\n5 0 x\n");
    const CommandRun result = run({"calibration", "list"});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(std::ranges::count(result.out, '\n'), 21);
    EXPECT_THAT(result.out, HasSubstr("Bsp           BSP      BSP      Heel  -    smooth  2 x 2"));
    EXPECT_THAT(result.out, HasSubstr("ZAN_CAL_Wind weight.txt"));
}

TEST_F(ShowCalibration, TheTableIsShownAsLoaded) {
    putItem(u"Bsp", "0 10\n5 0 1\n0 32767 2\n");
    EXPECT_THAT(run({"calibration", "show", "bsp"}).out, HasSubstr("\n   at  0  10\n0      -   2\n5      0   1\n"));
}

TEST_F(ShowCalibration, EvalTellsWhatBecomesOfAWrittenValue) {
    putItem(u"Bsp", "0 10\n0 0 1\n20 0 3\n");
    machine.addDword(kCalibrationKey, u"CalUse_2", 1);
    machine.addDword(kCalibrationKey, u"CalLinear_2", 1);
    const std::string out = run({"calibration", "eval", "Bsp", "5", "10"}).out;
    EXPECT_THAT(out, HasSubstr("Row         Heel 10\u00B0\n"));
    EXPECT_THAT(out, HasSubstr("Table       1 kt\n"));
    EXPECT_THAT(out, HasSubstr("Written     BSP 5 kt is stored as 6 kt\n"));
}

TEST_F(ShowCalibration, EvalOfAnItemNotInUseTellsWhatItWouldDo) {
    putItem(u"Hdg", "0 360\n0 3 3\n");
    const std::string out = run({"calibration", "eval", "8", "359"}).out;
    EXPECT_THAT(out, HasSubstr("Written     HDG 359\u00B0 is stored as 359\u00B0\n"));
    EXPECT_THAT(out, HasSubstr("If in use   HDG 359\u00B0 is stored as 2\u00B0\n"));
}

TEST_F(ShowCalibration, EvalCorrectsTheRowInputWhereThatIsTheChannel) {
    putItem(u"Aws", "0 45 90\n0 0 1 2\n10 10 11 12\n20 20 21 22\n");
    machine.addDword(kCalibrationKey, u"CalUse_3", 1);
    machine.addDword(kCalibrationKey, u"CalLinear_3", 1);
    const std::string given = run({"calibration", "eval", "Aws", "90", "10"}).out;
    EXPECT_THAT(given, HasSubstr("Correction  10.2222")); // a signed column angle is entered with the row input
    EXPECT_THAT(given, HasSubstr("Written     AWS 10 kt is stored as 20.2222"));
    store(ZAN_AWS, 20);
    const std::string current = run({"calibration", "eval", "Aws", "90"}).out;
    EXPECT_THAT(current, HasSubstr("AWS 20 kt\n"));
    EXPECT_THAT(current, HasSubstr("Correction  20.4444"));
    EXPECT_THAT(current, HasSubstr("Written     AWS 20 kt is stored as 40.4444"));
}

TEST_F(ShowCalibration, EvalOfAnItemThatTheHostComputesIsRefusedBeforeThereIsAHostToo) {
    putItem(u"Twa", "0 180\n0 1 1\n");
    EXPECT_THAT(run({"calibration", "eval", "Twa", "30", "10"}).out, HasSubstr("is stored as"));
    machine.addDword(kCoreKey, u"Sys_b26", 1);
    EXPECT_THAT(run({"calibration", "eval", "Twa", "30", "10"}).out, HasSubstr("is refused"));
}

TEST_F(ShowCalibration, EvalOfAnItemWithoutInputsGivesItsFirstKnot) {
    putItem(u"Wind weight", "0 10 20\n0 5 6 7\n");
    EXPECT_THAT(run({"calibration", "eval", "15", "20"}).out, HasSubstr("Correction  5\n"));
}

TEST_F(ShowCalibration, EvalTakesAWrittenValueTheWholeWay) {
    putItem(u"Hdg", "0 360\n0 3 3\n");
    machine.addDword(kCalibrationKey, u"CalUse_8", 1);
    EXPECT_THAT(run({"calibration", "eval", "8", "370"}).out,
                HasSubstr("Written     HDG 370\u00B0 is stored as 13\u00B0\n"));
    EXPECT_THAT(run({"calibration", "eval", "8", "725"}).out,
                HasSubstr("Written     HDG 725\u00B0 clears the channel: it is out of range\n"));
}

TEST_F(ShowCalibration, EvalTellsThatAWriteIsRefused) {
    putItem(u"Bsp", "0 10\n0 1 1\n");
    holder();
    area().settings[ZAN_BSP].blocked = 1;
    EXPECT_THAT(run({"calibration", "eval", "Bsp", "5"}).out, HasSubstr("BSP 5 kt is refused"));
}

TEST_F(ShowCalibration, WithoutARowValueTheCurrentOneCounts) {
    putItem(u"Bsp", "0 10\n0 1 1\n20 3 3\n");
    store(ZAN_HEEL, 20);
    EXPECT_THAT(run({"calibration", "eval", "Bsp", "5"}).out, HasSubstr("Table       3 kt\n"));
}

TEST_F(ShowCalibration, TheLivingSectionIsLeftAlone) {
    putItem(u"Bsp", "0 10\n0 1 1\n");
    holder();
    std::vector<std::byte> before(kSharedAreaBytes);
    std::memcpy(before.data(), &area(), before.size());
    passSeconds(1);
    (void)run({"calibration", "eval", "Bsp", "5"});
    (void)run({"calibration", "plot", "Bsp"});
    (void)run({"check"});
    EXPECT_EQ(std::memcmp(before.data(), &area(), before.size()), 0);
}

TEST_F(ShowCalibration, UnknownItemsGetHelp) {
    EXPECT_EQ(run({"calibration", "show", "20"}).code, 1);
    EXPECT_THAT(run({"calibration", "show", "20"}).err, HasSubstr("they go from 0 to 19"));
    EXPECT_THAT(run({"calibration", "show", "aw"}).err, HasSubstr("near it: Aws, AwaOffset, Awa"));
    EXPECT_EQ(run({"calibration", "eval", "Bsp"}).code, 2);
    EXPECT_EQ(run({"calibration"}).code, 2);
}

TEST_F(ShowCalibration, HostileSectionIsHarmless) {
    putItem(u"Bsp", "0 10\n0 1 1\n20 3 3\n");
    for (std::uint64_t seed = 1; seed <= 8; ++seed) {
        fillWithNoise(area(), seed);
        EXPECT_TRUE(isHarmless(run({"calibration", "list"}).out));
        EXPECT_TRUE(isHarmless(run({"calibration", "eval", "Bsp", "5"}).out));
        EXPECT_TRUE(isHarmless(run({"check"}).out));
    }
}

} // namespace
} // namespace tallowmere::test

// What is stored for a value that is written to a calibrated channel.
#include "tests/calibration/calibration_fixture.hpp"

#include <cmath>
#include <set>

namespace tallowmere::test {
namespace {

namespace which = calibration_item;

class CalibrateOnWrite : public CalibrationTest {
  protected:
    CalibrateOnWrite() { reset(); }
    void flag(ChannelIndex channel, std::uint8_t byte = 1) { area->settings[channel].calibrate = byte; }
};

TEST_F(CalibrateOnWrite, ChannelWithoutItsFlagIsStoredAsWritten) {
    useConstant(which::kBsp, 0.5);
    flag(ZAN_BSP, 0);
    EXPECT_EQ(stored(ZAN_BSP, 6.0), 6.0);
    EXPECT_EQ(calibration.CalibrateOnWrite(ZAN_BSP, 6.0), 6.0);
    flag(ZAN_BSP);
    EXPECT_EQ(stored(ZAN_BSP, 6.0), 6.5);
    EXPECT_EQ(calibration.CalibrateOnWrite(ZAN_BSP, 6.0), 6.5);
}

TEST_F(CalibrateOnWrite, NoValueStaysNoValue) {
    useConstant(which::kBsp, 0.5);
    EXPECT_EQ(calibration.CalibrateOnWrite(ZAN_BSP, NO_VALUE), NO_VALUE);
    EXPECT_EQ(stored(ZAN_BSP, NO_VALUE), NO_VALUE);
}

TEST_F(CalibrateOnWrite, ChannelsFrom414OnAreLeftAlone) {
    EXPECT_EQ(calibration.CalibrateOnWrite(414, 6.0), 6.0);
    EXPECT_EQ(calibration.CalibrateOnWrite(65535, 6.0), 6.0);
}

TEST_F(CalibrateOnWrite, EachChannelHasItsItem) {
    struct Row {
        ChannelIndex channel;
        std::size_t item;
    };
    const Row rows[] = {{1, 2},   {3, 3},   {4, 7},   {5, 6},   {6, 9},   {13, 8},
                        {15, 17}, {16, 19}, {18, 11}, {19, 12}, {20, 14}, {24, 13}};
    for (const Row& row : rows) {
        reset();
        useConstant(row.item, 0.25);
        EXPECT_EQ(stored(row.channel, 10.0), 10.25) << row.channel;
        reset();
        for (std::size_t id = 0; id < kCalibrationItemCount; ++id)
            if (id != row.item) useConstant(id, 0.25);
        flag(row.channel);
        EXPECT_EQ(stored(row.channel, 10.0), 10.0) << row.channel;
    }
}

TEST_F(CalibrateOnWrite, NoOtherChannelIsCorrected) {
    for (std::size_t id = 0; id < kCalibrationItemCount; ++id) useConstant(id, 0.25);
    const std::set<std::size_t> corrected{1, 2, 3, 4, 5, 6, 13, 15, 16, 18, 19, 20, 24};
    for (std::size_t channel = 1; channel < kChannelCount; ++channel) {
        const auto index = static_cast<ChannelIndex>(channel);
        flag(index);
        if (corrected.contains(channel)) continue;
        EXPECT_EQ(calibration.CalibrateOnWrite(index, 10.0), 10.0) << channel;
    }
    EXPECT_TRUE(calibrated(ZAN_LEEWAY));
    EXPECT_EQ(stored(ZAN_LEEWAY, 3.0), 3.0);
}

TEST_F(CalibrateOnWrite, WithoutACorrectionTheValuePasses) {
    use(which::kBsp, {});
    EXPECT_EQ(stored(ZAN_BSP, 6.0), 6.0);
    calibration.item(which::kBsp).use = 0; // the flag is still up
    EXPECT_EQ(stored(ZAN_BSP, 6.0), 6.0);
}

TEST_F(CalibrateOnWrite, TrueWindAnglesCorrectionMirrorsWithTheTack) {
    useConstant(which::kTwa, 2.0);
    EXPECT_EQ(stored(ZAN_TWA, -30.0), -32.0);
    EXPECT_EQ(stored(ZAN_TWA, 30.0), 32.0);
    EXPECT_EQ(stored(ZAN_TWA, 0.0), 2.0);
    EXPECT_EQ(stored(ZAN_TWA, -0.0), 2.0);
    useConstant(which::kAwa, 2.0); // the apparent wind angle's doesn't
    EXPECT_EQ(stored(ZAN_AWA, -30.0), -28.0);
}

TEST_F(CalibrateOnWrite, ApparentWindAngleTakesItsOffsetThenItsTable) {
    useConstant(which::kAwaOffset, 5.0);
    EXPECT_EQ(stored(ZAN_AWA, 30.0), 35.0);
    useConstant(which::kAwa, 1.0);
    EXPECT_EQ(stored(ZAN_AWA, 30.0), 36.0);
    calibration.item(which::kAwaOffset).use = 0;
    EXPECT_EQ(stored(ZAN_AWA, 30.0), 31.0);
    calibration.item(which::kAwa).use = 0;
    EXPECT_EQ(stored(ZAN_AWA, 30.0), 30.0);
}

TEST_F(CalibrateOnWrite, ApparentWindAnglesTableIsEvaluatedBehindTheOffset) {
    useConstant(which::kAwaOffset, 5.0);
    CalibrationItem& table = use(which::kAwa, {rowOf(0.0, {{0.0, 0.0}, {10.0, 1.0}})});
    table.table.linear = 1;
    table.rowInput = ZAN_AWA;                 // so that the angle itself is looked up, by its size
    EXPECT_EQ(stored(ZAN_AWA, 25.0), 33.0);   // at 30
    EXPECT_EQ(stored(ZAN_AWA, -45.0), -36.0); // at |-40|
}

TEST_F(CalibrateOnWrite, BearingWrapsByOneTurn) {
    useConstant(which::kHdg, 3.0);
    EXPECT_EQ(stored(ZAN_HDG, 359.0), 2.0);
    EXPECT_EQ(stored(ZAN_HDG, 357.0), 0.0);
    EXPECT_EQ(stored(ZAN_HDG, 356.5), 359.5);
    useConstant(which::kHdg, -3.0);
    EXPECT_EQ(stored(ZAN_HDG, 1.0), 358.0);
    EXPECT_EQ(stored(ZAN_HDG, 3.0), 0.0);
    useConstant(which::kHdg, 725.0);
    EXPECT_EQ(stored(ZAN_HDG, 0.0), 365.0);
    useConstant(which::kHdg, -800.0);
    EXPECT_EQ(stored(ZAN_HDG, 0.0), -440.0);
}

TEST_F(CalibrateOnWrite, SignedAngleWrapsByOneTurn) {
    useConstant(which::kAwa, 3.0);
    EXPECT_EQ(stored(ZAN_AWA, 179.0), -178.0);
    EXPECT_EQ(stored(ZAN_AWA, 177.0), 180.0);
    EXPECT_EQ(stored(ZAN_AWA, -180.0), -177.0);
    useConstant(which::kHeel, -3.0);
    EXPECT_EQ(stored(ZAN_HEEL, -179.0), 178.0);
    EXPECT_EQ(stored(ZAN_HEEL, -177.0), -180.0);
    useConstant(which::kHeel, 1000.0);
    EXPECT_EQ(stored(ZAN_HEEL, 0.0), 640.0);
}

TEST_F(CalibrateOnWrite, MastAngleIsASignedAngle) {
    useConstant(which::kMastAngle, 0.0);
    EXPECT_EQ(calibration.CalibrateOnWrite(ZAN_MASTANG, 190.0), -170.0);
}

TEST_F(CalibrateOnWrite, NegativeSpeedsBecomeZero) {
    useConstant(which::kBsp, -3.0);
    EXPECT_EQ(stored(ZAN_BSP, 2.0), 0.0);
    EXPECT_EQ(stored(ZAN_BSP, 3.5), 0.5);
    useConstant(which::kTws, -3.0);
    EXPECT_EQ(stored(ZAN_TWS, 2.0), 0.0);
    useConstant(which::kBaro, -2000.0); // no speed
    EXPECT_EQ(stored(ZAN_BARO, 1000.0), -1000.0);
}

TEST_F(CalibrateOnWrite, RangeStepRunsForFlaggedChannelsWithoutACorrectionToo) {
    flag(ZAN_SOG);
    EXPECT_EQ(stored(ZAN_SOG, -2.0), 0.0);
    flag(ZAN_USER_3);
    EXPECT_EQ(stored(ZAN_USER_3, -2.0), -2.0);
    area->settings[ZAN_USER_3].unitClass = 20;
    EXPECT_EQ(stored(ZAN_USER_3, -2.0), 0.0);
}

TEST_F(CalibrateOnWrite, CorrectedValueMeetsNoRangeCheck) {
    useConstant(which::kAws, 100.0); // plausible are 0 to 150
    EXPECT_EQ(stored(ZAN_AWS, 149.0), 249.0);
    EXPECT_EQ(stored(ZAN_AWS, 151.0), NO_VALUE);
}

TEST_F(CalibrateOnWrite, ResultOf32767ClearsTheChannel) {
    useConstant(which::kBaro, 1.0);
    stored(ZAN_BARO, 1000.0);
    EXPECT_TRUE(write(ZAN_BARO, 32766.0));
    EXPECT_EQ(read(ZAN_BARO), NO_VALUE);
    useConstant(which::kHdg, 32767.0 - 180.0);
    EXPECT_EQ(calibration.CalibrateOnWrite(ZAN_HDG, 180.0), NO_VALUE); // not wrapped to 32407
}

TEST_F(CalibrateOnWrite, NaNStaysNaN) {
    for (const ChannelIndex channel :
         {ChannelIndex{ZAN_BSP}, ChannelIndex{ZAN_HDG}, ChannelIndex{ZAN_TWA}, ChannelIndex{ZAN_AWA}}) {
        for (std::size_t id = 0; id < kCalibrationItemCount; ++id) useConstant(id, 1.0);
        EXPECT_TRUE(std::isnan(calibration.CalibrateOnWrite(channel, kNaN)));
    }
}

TEST_F(CalibrateOnWrite, EveryBoatsValuesAreCorrectedWithTheOwnBoatsInputs) {
    CalibrationItem& item = use(which::kTwa, {rowOf(0.0, {{0.0, 0.0}}), rowOf(10.0, {{0.0, 5.0}})});
    item.table.linear = 1;
    write(ZAN_TWS, 10.0, 0);
    write(ZAN_TWS, 0.0, 7);
    write(ZAN_TWA, 30.0, 7);
    EXPECT_EQ(read(ZAN_TWA, 7), 35.0);
}

TEST_F(CalibrateOnWrite, BeforeTheStartOnlyTheRangeStepRuns) {
    Calibration idle(&values);
    flag(ZAN_BSP);
    flag(ZAN_HDG);
    EXPECT_EQ(idle.CalibrateOnWrite(ZAN_BSP, 6.0), 6.0);
    EXPECT_EQ(idle.CalibrateOnWrite(ZAN_BSP, -6.0), 0.0);
    EXPECT_EQ(idle.CalibrateOnWrite(ZAN_HDG, 359.0), 359.0);
}

TEST_F(CalibrateOnWrite, CorrectionComesBeforeTheDerivedChannels) {
    useConstant(which::kHdg, 10.0);
    system.setFlag(system_flag::kComputeTurnRate, 1);
    values.store(ZAN_HDG, Record::ofNumber(0.0), 0, 1000);
    values.store(ZAN_HDG, Record::ofNumber(40.0), 0, 1000 + 2 * 10'000'000);
    EXPECT_EQ(std::bit_cast<double>(values.fetch(ZAN_ROT, 0).record.payload), 20.0);
    EXPECT_EQ(read(ZAN_HDG), 50.0);
}

} // namespace
} // namespace tallowmere::test

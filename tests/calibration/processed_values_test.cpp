// The second way to read: the third value array, with or without calibration.
#include "tests/calibration/calibration_fixture.hpp"

namespace tallowmere::test {
namespace {

class ProcessedValues : public CalibrationTest {
  protected:
    ProcessedValues() {
        reset();
        area->boatCount = 4;
    }
    void keep(ChannelIndex channel, const Record& record, BoatIndex boat = 0) {
        if (boat < 2)
            storeRecord(area->fullBlocks[boat].third[channel], record);
        else
            storeRecord(area->compactBlocks[boat - 2].third[kCatalogue[channel].compactIndex], record);
    }
    [[nodiscard]] double number(ChannelIndex channel, bool calibratedToo, BoatIndex boat = 0) const {
        const RecordResult found = values.fetchProcessed(channel, boat, calibratedToo);
        EXPECT_EQ(found.holdsValue, found.record.number() != NO_VALUE);
        return found.record.number();
    }
};

TEST_F(ProcessedValues, ComeFromTheThirdArray) {
    write(ZAN_BSP, 5.0);
    keep(ZAN_BSP, Record::ofNumber(6.0), 0);
    keep(ZAN_BSP, Record::ofNumber(7.0), 1);
    keep(ZAN_BSP, Record::ofNumber(8.0), 3);
    EXPECT_EQ(number(ZAN_BSP, false, 0), 6.0);
    EXPECT_EQ(number(ZAN_BSP, false, 1), 7.0);
    EXPECT_EQ(number(ZAN_BSP, false, 2), NO_VALUE);
    EXPECT_EQ(number(ZAN_BSP, false, 3), 8.0);
}

TEST_F(ProcessedValues, AreCorrectedOnlyWhenAskedAndFlagged) {
    useConstant(calibration_item::kBsp, 0.5);
    keep(ZAN_BSP, Record{0x4201, bitsOf(6.0)});
    EXPECT_EQ(number(ZAN_BSP, false), 6.0);
    EXPECT_EQ(number(ZAN_BSP, true), 6.5);
    EXPECT_EQ(values.fetchProcessed(ZAN_BSP, 0, true).record.header, 0x4201U);
    area->settings[ZAN_BSP].calibrate = 0;
    EXPECT_EQ(number(ZAN_BSP, true), 6.0);
}

TEST_F(ProcessedValues, StayAsTheyAreInTheSection) {
    useConstant(calibration_item::kBsp, 0.5);
    keep(ZAN_BSP, Record::ofNumber(6.0));
    const auto before = std::make_unique<SharedArea>(*area);
    EXPECT_EQ(number(ZAN_BSP, true), 6.5);
    EXPECT_TRUE(sameBytes(*before));
}

TEST_F(ProcessedValues, WithoutAValueNothingIsCorrected) {
    useConstant(calibration_item::kBsp, 0.5);
    EXPECT_EQ(number(ZAN_BSP, true), NO_VALUE);
}

TEST_F(ProcessedValues, OfOtherKindsAreNeverCorrected) {
    for (ChannelSetting& setting : area->settings) setting.calibrate = 1;
    keep(ZAN_SAIL, Record::ofInteger(-3));
    EXPECT_EQ(values.fetchProcessed(ZAN_SAIL, 0, true).record, Record::ofInteger(-3));
    keep(ZAN_GPS_TIME, Record::ofTicks(-77));
    EXPECT_EQ(values.fetchProcessed(ZAN_GPS_TIME, 0, true).record, Record::ofTicks(-77));
}

TEST_F(ProcessedValues, CorrectionThatGivesNoValueIsTold) {
    useConstant(calibration_item::kBaro, 1.0);
    keep(ZAN_BARO, Record::ofNumber(32766.0));
    EXPECT_FALSE(values.fetchProcessed(ZAN_BARO, 0, true).holdsValue);
}

TEST_F(ProcessedValues, WithoutACorrectorComeAsTheyAre) {
    const ValueStore plain(context);
    area->settings[ZAN_BSP].calibrate = 1;
    keep(ZAN_BSP, Record::ofNumber(-6.0));
    EXPECT_EQ(plain.fetchProcessed(ZAN_BSP, 0, true).record.number(), -6.0);
}

TEST_F(ProcessedValues, AreNoneOutOfRangeAndWithoutASlotOrSection) {
    EXPECT_EQ(values.fetchProcessed(414, 0, true).record, Record::none(StorageKind::Double));
    EXPECT_FALSE(values.fetchProcessed(65535, 0, true).holdsValue);
    EXPECT_FALSE(values.fetchProcessed(ZAN_BSP, 100, true).holdsValue);
    keep(ZAN_BSP, Record::ofNumber(8.0), 4);
    EXPECT_FALSE(values.fetchProcessed(ZAN_BSP, 4, true).holdsValue); // not below the boat count
    EXPECT_FALSE(values.fetchProcessed(ZAN_LEEWAY, 2, true).holdsValue);
    EXPECT_EQ(values.fetchProcessed(ZAN_SAIL, 99, true).record, Record::none(StorageKind::Integer));
    const ValueStore without(withoutSection, &calibration);
    EXPECT_EQ(without.fetchProcessed(ZAN_BSP, 0, true).record, Record::none(StorageKind::Double));
    area->boatCount = 0xFFFFFFFF;
    EXPECT_FALSE(values.fetchProcessed(ZAN_BSP, 100, true).holdsValue);
}

} // namespace
} // namespace tallowmere::test

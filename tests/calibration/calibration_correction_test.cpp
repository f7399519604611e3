// Which inputs an item is evaluated at.
#include "tests/calibration/calibration_fixture.hpp"

#include <cmath>

namespace tallowmere::test {
namespace {

namespace which = calibration_item;

class CalibrationCorrection : public CalibrationTest {
  protected:
    CalibrationCorrection() { reset(); }
    /// y = x for every x and row, so that the correction tells what x was.
    void useIdentity(std::size_t id) { use(id, {rowOf(0.0, {{-1.0, -1.0}, {1.0, 1.0}})}).table.linear = 1; }
    /// y = r for r from -1000 to 40000, whatever x.
    void useRowIdentity(std::size_t id) {
        use(id, {rowOf(-1000.0, {{0.0, -1000.0}}), rowOf(40000.0, {{0.0, 40000.0}})}).table.linear = 1;
    }
};

TEST_F(CalibrationCorrection, ItemsOutOfUseAndIdsFrom20OnHaveNone) {
    expectNoCorrection(which::kBsp, 5.0);
    expectNoCorrection(20, 5.0);
    expectNoCorrection(static_cast<std::size_t>(-1), 5.0);
    calibration.item(which::kBsp).use = 1;
    EXPECT_EQ(correction(which::kBsp, 5.0), 0.0);
}

TEST_F(CalibrationCorrection, FourItemsAreEvaluatedOutOfUseToo) {
    for (CalibrationItem& item : {std::ref(calibration.item(0)), std::ref(calibration.item(1)),
                                  std::ref(calibration.item(10)), std::ref(calibration.item(16))})
        item.use = 0;
    EXPECT_EQ(correction(which::kRateOfTurn, 0.0), 15.0);
    EXPECT_EQ(correction(which::kAcceleration, 0.0), 10.0);
    EXPECT_EQ(correction(which::kLeeway, 0.0), 13.0);
    EXPECT_EQ(correction(which::kMastHeight, 0.0), 10.0);
    expectNoCorrection(which::kWindWeight, 0.0);
}

TEST_F(CalibrationCorrection, ItemWithoutInputsYieldsItsFirstKnotWhateverTheValue) {
    use(which::kWindWeight, {rowOf(3.0, {{5.0, 0.75}, {6.0, 9.0}}), rowOf(4.0, {{1.0, 2.0}})});
    for (const double value : {0.0, -7.0, 1e9, NO_VALUE, kNaN}) EXPECT_EQ(correction(which::kWindWeight, value), 0.75);
}

TEST_F(CalibrationCorrection, ItemWithoutInputsAndWithoutAKnotOrValueHasNone) {
    use(which::kWindWeight, {});
    expectNoCorrection(which::kWindWeight, 1.0);
    use(which::kWindWeight, {rowOf(0.0, {})});
    expectNoCorrection(which::kWindWeight, 1.0);
    use(which::kWindWeight, {rowOf(0.0, {{0.0, NO_VALUE}})});
    expectNoCorrection(which::kWindWeight, 1.0);
}

TEST_F(CalibrationCorrection, ColumnInputIsTheValueWrittenToTheItemsOwnChannel) {
    useIdentity(which::kBsp);
    write(ZAN_BSP, 3.0);
    write(ZAN_HEEL, 20.0);
    EXPECT_EQ(correction(which::kBsp, 7.5), 7.5);
}

TEST_F(CalibrationCorrection, OtherColumnInputsAreTheOwnBoatsCurrentValues) {
    useIdentity(which::kAcceleration); // calibrates no channel; columns are TWS
    write(ZAN_TWS, 12.0, 0);
    write(ZAN_TWS, 99.0, 1);
    EXPECT_EQ(correction(which::kAcceleration, 5.0), 12.0);
}

TEST_F(CalibrationCorrection, MissingColumnInputIs32767) {
    useIdentity(which::kAcceleration);
    EXPECT_FALSE(values.fetch(ZAN_TWS, 0).holdsValue);
    expectNoCorrection(which::kAcceleration, 5.0); // the identity of NO_VALUE is NO_VALUE
    use(which::kAcceleration, {rowOf(0.0, {{0.0, 0.0}, {1.0, 2.0}})}).table.linear = 1;
    EXPECT_EQ(correction(which::kAcceleration, 5.0), 65534.0);
}

TEST_F(CalibrationCorrection, RowInputIsTheValueWrittenToTheItemsOwnChannel) {
    useRowIdentity(which::kTws); // rows by TWS, the item's own channel
    write(ZAN_TWS, 3.0);
    EXPECT_DOUBLE_EQ(correction(which::kTws, 12.0), 12.0);
}

TEST_F(CalibrationCorrection, OtherRowInputsAreTheOwnBoatsCurrentValues) {
    useRowIdentity(which::kTwa);
    write(ZAN_TWS, 14.0);
    EXPECT_DOUBLE_EQ(correction(which::kTwa, 60.0), 14.0);
}

TEST_F(CalibrationCorrection, MissingRowInputTakesTheFirstRow) {
    useRowIdentity(which::kTwa);
    EXPECT_EQ(correction(which::kTwa, 60.0), -1000.0);
}

// KEPT: 32767 as an input is none.
TEST_F(CalibrationCorrection, NoChannelAsInputIsNoValueThoughTheItemsChannelIsNoneToo) {
    CalibrationItem& item = use(which::kWindWeight, {rowOf(0.0, {{0.0, 1.0}}), rowOf(10.0, {{0.0, 2.0}})});
    item.columnInput = ZAN_BSP; // the row input and the channel are 32767 both
    write(ZAN_BSP, 5.0);
    EXPECT_EQ(correction(which::kWindWeight, 10.0), 1.0);
}

TEST_F(CalibrationCorrection, InputsThatAreNoChannelsCountAsNone) {
    for (const std::int32_t odd : {414, -1, INT32_MAX, INT32_MIN}) {
        CalibrationItem& item = use(which::kWindWeight, {rowOf(0.0, {{0.0, 1.5}})});
        item.columnInput = item.rowInput = item.channel = odd;
        EXPECT_EQ(correction(which::kWindWeight, 3.0), 1.5);
    }
}

// Twa is looked up at x = |TWS|, for its columns are a wind angle.
TEST_F(CalibrationCorrection, SignedColumnAngleIsReplacedByTheRowInput) {
    useIdentity(which::kTwa);
    write(ZAN_TWS, 14.0);
    EXPECT_EQ(correction(which::kTwa, -60.0), 14.0);
    EXPECT_EQ(correction(which::kTwa, 60.0), 14.0);
    useIdentity(which::kAwa);
    write(ZAN_AWS, 21.0);
    EXPECT_EQ(correction(which::kAwa, 35.0), 21.0);
}

TEST_F(CalibrationCorrection, SignedColumnAngleWithoutRowInputBecomes32767) {
    useIdentity(which::kHeel); // one input, a signed angle
    expectNoCorrection(which::kHeel, 12.0);
    use(which::kHeel, {rowOf(0.0, {{0.0, 0.0}, {1.0, 2.0}})}).table.linear = 1;
    EXPECT_EQ(correction(which::kHeel, 12.0), 65534.0);
    use(which::kHeel, {rowOf(0.0, {{0.0, 1.5}})});
    EXPECT_EQ(correction(which::kHeel, 12.0), 1.5); // one knot is the same everywhere
}

TEST_F(CalibrationCorrection, MissingSignedColumnAngleStaysMissing) {
    useIdentity(which::kTws); // columns TWA, rows TWS
    EXPECT_FALSE(values.fetch(ZAN_TWA, 0).holdsValue);
    expectNoCorrection(which::kTws, 12.0); // not |12|
    write(ZAN_TWA, 45.0);
    EXPECT_EQ(correction(which::kTws, 12.0), 12.0);
}

TEST_F(CalibrationCorrection, SignedRowAngleCountsByItsSize) {
    useRowIdentity(which::kBsp); // rows by Heel
    write(ZAN_HEEL, -20.0);
    EXPECT_DOUBLE_EQ(correction(which::kBsp, 5.0), 20.0);
    write(ZAN_HEEL, 20.0);
    EXPECT_DOUBLE_EQ(correction(which::kBsp, 5.0), 20.0);
}

TEST_F(CalibrationCorrection, OtherInputsKeepTheirSign) {
    useIdentity(which::kBaro);
    EXPECT_EQ(correction(which::kBaro, -5.0), -5.0);
}

TEST_F(CalibrationCorrection, UserChannelsAngleClassIsTheOneOfTheSection) {
    CalibrationItem& item = use(which::kBsp, {rowOf(0.0, {{-100.0, -100.0}, {100.0, 100.0}})});
    item.table.linear = 1;
    item.columnInput = ZAN_USER_0;
    item.rowInput = ZAN_BARO;
    write(ZAN_USER_0, -33.0);
    write(ZAN_BARO, 44.0);
    EXPECT_EQ(correction(which::kBsp, 5.0), -33.0);
    area->settings[ZAN_USER_0].unitClass = 13;
    EXPECT_EQ(correction(which::kBsp, 5.0), 44.0);
}

TEST_F(CalibrationCorrection, InputsAreConvertedByTheirOwnKindByte) {
    useIdentity(which::kAcceleration);
    write(ZAN_TWS, 12.0);
    values.store(ZAN_TWS, Record{2, 9}, 0, kNoTime); // kind byte 2: an integer
    EXPECT_EQ(correction(which::kAcceleration, 5.0), 9.0);
}

TEST_F(CalibrationCorrection, StraightOrSmoothAsTheItemSays) {
    CalibrationItem& item = use(which::kBaro, {rowOf(0.0, {{0.0, 0.0}, {1.0, 0.0}, {2.0, 1.0}})});
    EXPECT_EQ(correction(which::kBaro, 1.5), 0.5 - 0.375 * 1.5);
    item.table.linear = 1;
    EXPECT_EQ(correction(which::kBaro, 1.5), 0.5);
}

TEST_F(CalibrationCorrection, TableWithoutAValueHasNone) {
    use(which::kBaro, {});
    expectNoCorrection(which::kBaro, 1000.0);
    use(which::kBaro, {rowOf(0.0, {{0.0, NO_VALUE}})});
    expectNoCorrection(which::kBaro, 1000.0);
}

TEST_F(CalibrationCorrection, EditedTableIsBuiltAgainByTheNextEvaluation) {
    CalibrationItem& item = use(which::kBaro, {rowOf(0.0, {{0.0, 0.0}, {1.0, 0.0}, {2.0, 1.0}})});
    item.table.rows[0].knots[2].y = 2.0;
    item.table.rows[0].dirty = 1;
    EXPECT_EQ(correction(which::kBaro, 0.5), -0.375 * 3.0 / 6.0);
}

} // namespace
} // namespace tallowmere::test

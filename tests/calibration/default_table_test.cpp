#include "calibration/default_table.hpp"
#include "tests/calibration/calibration_fixture.hpp"

#include <vector>

namespace tallowmere::test {
namespace {

class TestPolar final : public Polar {
  public:
    [[nodiscard]] std::optional<double> firstTargetAngle(double windSpeed) const noexcept override {
        asked.push_back(windSpeed);
        return first;
    }
    [[nodiscard]] std::optional<double> secondTargetAngle(double) const noexcept override { return second; }
    std::optional<double> first = 42.0;
    std::optional<double> second = 150.0;
    mutable std::vector<double> asked;
};

CalibrationTable tableFor(std::size_t id, const Polar* polar = nullptr) {
    CalibrationTable table;
    buildDefaultTable(kCalibrationItems[id], polar, table);
    return table;
}

std::vector<double> positionsOf(const CurveRow& row) {
    std::vector<double> found;
    for (const CurveKnot& knot : row.knots) found.push_back(knot.x);
    return found;
}
std::vector<double> valuesOf(const CurveRow& row) {
    std::vector<double> found;
    for (const CurveKnot& knot : row.knots) found.push_back(knot.y);
    return found;
}
std::vector<double> axisOf(const CalibrationTable& table) {
    std::vector<double> found;
    for (const CurveKnot& column : table.columns) found.push_back(column.y);
    return found;
}
std::vector<double> rowValuesOf(const CalibrationTable& table) {
    std::vector<double> found;
    for (const CurveRow& row : table.rows) found.push_back(row.rowValue);
    return found;
}

TEST(DefaultTable, HasTheShapeOfEveryDefinition) {
    for (const CalibrationItemDef& definition : kCalibrationItems) {
        const CalibrationTable table = tableFor(static_cast<std::size_t>(definition.id));
        EXPECT_EQ(table.rows.size(), definition.rows);
        EXPECT_EQ(table.columns.size(), definition.columns);
        EXPECT_EQ(table.sharedColumns, definition.sharedColumns);
        EXPECT_EQ(table.changed, 1);
        for (const CurveRow& row : table.rows) EXPECT_EQ(row.knots.size(), definition.columns);
    }
}

TEST(DefaultTable, PositionsFollowStartAndStep) {
    const CalibrationTable aws = tableFor(calibration_item::kAws);
    EXPECT_EQ(rowValuesOf(aws), (std::vector<double>{0, 5, 10, 15, 20, 25, 30}));
    for (const CurveRow& row : aws.rows) {
        EXPECT_EQ(positionsOf(row), (std::vector<double>{0, 45, 90, 135, 180}));
        EXPECT_EQ(valuesOf(row), (std::vector<double>{0, 0, 0, 0, 0}));
    }
    EXPECT_EQ(axisOf(aws), (std::vector<double>{0, 45, 90, 135, 180}));
    EXPECT_EQ(positionsOf(tableFor(calibration_item::kBaro).rows[0]),
              (std::vector<double>{900, 950, 1000, 1050, 1100, 1150}));
    EXPECT_EQ(positionsOf(tableFor(calibration_item::kTwa).rows[6]),
              (std::vector<double>{0, 45, 90, 135, 180, 225, 270, 315, 360, 405}));
}

TEST(DefaultTable, EveryKnotHasTheDefaultValue) {
    EXPECT_EQ(valuesOf(tableFor(calibration_item::kRateOfTurn).rows[0]), std::vector<double>(7, 15.0));
    EXPECT_EQ(valuesOf(tableFor(calibration_item::kLeeway).rows[0]), std::vector<double>{13.0});
    EXPECT_EQ(valuesOf(tableFor(calibration_item::kMastHeight).rows[0]), std::vector<double>{10.0});
}

TEST(DefaultTable, BrakeHasItsFixedValues) {
    const CalibrationTable brake = tableFor(calibration_item::kBrake);
    EXPECT_EQ(positionsOf(brake.rows[0]), (std::vector<double>{0, 1.5, 3, 10, 15}));
    EXPECT_EQ(valuesOf(brake.rows[0]), (std::vector<double>{250, 150, 100, 75, 60}));
    EXPECT_EQ(axisOf(brake), (std::vector<double>{0, 1.5, 3, 10, 15}));
    EXPECT_EQ(brake.rows[0].dirty, 1);
    EXPECT_EQ(brake.changed, 1);
}

TEST(DefaultTable, BrakeOfAnotherShapeKeepsThePlainDefaults) {
    CalibrationItemDef six = kCalibrationItems[calibration_item::kBrake];
    six.columns = 6;
    CalibrationTable table;
    buildDefaultTable(six, nullptr, table);
    EXPECT_EQ(valuesOf(table.rows[0]), std::vector<double>(6, 100.0));
    CalibrationItemDef twoRows = kCalibrationItems[calibration_item::kBrake];
    twoRows.rows = 2;
    buildDefaultTable(twoRows, nullptr, table);
    EXPECT_EQ(valuesOf(table.rows[1]), std::vector<double>(5, 100.0));
}

TEST(DefaultTable, BrakeWithOwnPositionsTakesTheValuesOnly) {
    CalibrationItemDef own = kCalibrationItems[calibration_item::kBrake];
    own.sharedColumns = 0;
    CalibrationTable table;
    buildDefaultTable(own, nullptr, table);
    EXPECT_EQ(positionsOf(table.rows[0]), (std::vector<double>{0, 30, 60, 90, 120}));
    EXPECT_EQ(valuesOf(table.rows[0]), (std::vector<double>{250, 150, 100, 75, 60}));
}

TEST(DefaultTable, TrueWindItemsTakeTwoValuesOfEachRowFromThePolar) {
    for (const std::size_t id : {calibration_item::kTws, calibration_item::kTwa}) {
        const TestPolar polar;
        const CalibrationTable table = tableFor(id, &polar);
        for (const CurveRow& row : table.rows)
            EXPECT_EQ(valuesOf(row), (std::vector<double>{0, 0, 42, 0, 0, 0, 150, 0, 0, 0}));
        EXPECT_EQ(polar.asked, (std::vector<double>{0, 5, 10, 15, 20, 25, 30}));
    }
}

TEST(DefaultTable, OtherItemsAskNoPolar) {
    const TestPolar polar;
    for (std::size_t id = 0; id < kCalibrationItemCount; ++id) {
        if (id == calibration_item::kTws || id == calibration_item::kTwa) continue;
        tableFor(id, &polar);
    }
    EXPECT_TRUE(polar.asked.empty());
}

TEST(DefaultTable, FewerThanTenColumnsAskNoPolar) {
    CalibrationItemDef nine = kCalibrationItems[calibration_item::kTwa];
    nine.columns = 9;
    const TestPolar polar;
    CalibrationTable table;
    buildDefaultTable(nine, &polar, table);
    EXPECT_TRUE(polar.asked.empty());
}

TEST(DefaultTable, TargetAnglesAreRoundedToATenthAndHeldIn0To180) {
    TestPolar polar;
    polar.first = 41.26;
    polar.second = 179.96;
    CurveRow row = tableFor(calibration_item::kTwa, &polar).rows[0];
    EXPECT_EQ(bitsOf(row.knots[2].y), bitsOf(413 * 0.1));
    EXPECT_EQ(bitsOf(row.knots[6].y), bitsOf(1800 * 0.1));
    polar.first = -20.0;
    polar.second = 500.0;
    row = tableFor(calibration_item::kTwa, &polar).rows[0];
    EXPECT_EQ(row.knots[2].y, 0.0);
    EXPECT_EQ(row.knots[6].y, 180.0);
    polar.first = -kInfinity;
    polar.second = kInfinity;
    row = tableFor(calibration_item::kTwa, &polar).rows[0];
    EXPECT_EQ(row.knots[2].y, 0.0);
    EXPECT_EQ(row.knots[6].y, 180.0);
}

TEST(DefaultTable, FailedTargetQueriesLeaveTheDefault) {
    TestPolar polar;
    polar.first = std::nullopt;
    polar.second = kNaN;
    for (const CurveRow& row : tableFor(calibration_item::kTws, &polar).rows)
        EXPECT_EQ(valuesOf(row), std::vector<double>(10, 0.0));
}

} // namespace
} // namespace tallowmere::test

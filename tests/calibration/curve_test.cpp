// What curves do at their knots, between, beyond, and where values are missing.
#include "tests/calibration/calibration_fixture.hpp"

#include <algorithm>
#include <cmath>
#include <random>

namespace tallowmere::test {
namespace {

constexpr double kNone = 32767.0;

struct Outcome {
    bool holds;
    double y;
};

Outcome spline(CurveRow& row, double x) {
    double y = -1.0;
    const bool holds = EvalSpline(row, x, y);
    EXPECT_EQ(holds, !(y == kNone));
    return {holds, y};
}
Outcome linear(const CurveRow& row, double x) {
    double y = -1.0;
    const bool holds = EvalLinear(row, x, y);
    EXPECT_EQ(holds, !(y == kNone));
    return {holds, y};
}
Outcome across(CalibrationTable& table, double x, double r) {
    double y = -1.0;
    const bool holds = EvalTable(table, x, r, y);
    return {holds, y};
}

CalibrationTable tableOf(std::initializer_list<CurveRow> rows, bool straight = false) {
    CalibrationTable table;
    table.rows = rows;
    table.linear = straight ? 1 : 0;
    return table;
}

// --- one row

TEST(Curve, NewKnotHoldsNoValueThroughout) {
    const CurveKnot knot;
    EXPECT_EQ(knot.x, kNone);
    EXPECT_EQ(knot.y, kNone);
    EXPECT_EQ(knot.y2, kNone);
}

TEST(Curve, RowWithoutKnotsGivesNoValue) {
    CurveRow row = rowOf(0, {});
    EXPECT_FALSE(spline(row, 1.0).holds);
    EXPECT_FALSE(linear(row, 1.0).holds);
    EXPECT_FALSE(BuildSpline(row));
}

TEST(Curve, OneKnotGivesItsValueForEveryPositionInBothModes) {
    CurveRow row = rowOf(0, {{5.0, 1.25}});
    for (const double x : {5.0, -1e300, 0.0, kNone, kInfinity, kNaN}) {
        EXPECT_EQ(spline(row, x).y, 1.25) << x;
        EXPECT_EQ(linear(row, x).y, 1.25) << x;
    }
}

TEST(Curve, OneKnotWithoutValueGivesNone) {
    CurveRow row = rowOf(0, {{5.0, kNone}});
    EXPECT_FALSE(spline(row, 5.0).holds);
    EXPECT_FALSE(linear(row, 7.0).holds);
}

TEST(Curve, TwoKnotsMakeTheSplineAStraightLine) {
    CurveRow row = rowOf(0, {{1.0, 2.0}, {5.0, 10.0}});
    EXPECT_TRUE(BuildSpline(row));
    EXPECT_EQ(row.knots[0].y2, 0.0);
    EXPECT_EQ(row.knots[1].y2, 0.0);
    for (const double x : {-3.0, 1.0, 2.0, 3.5, 5.0, 9.0}) {
        EXPECT_EQ(spline(row, x).y, 2.0 * x) << x;
        EXPECT_EQ(linear(row, x).y, 2.0 * x) << x;
    }
}

TEST(Curve, KnotsOnAStraightLineGiveItBackExactly) {
    CurveRow row = rowOf(0, {{0.0, 1.0}, {1.0, 3.0}, {2.0, 5.0}, {4.0, 9.0}, {8.0, 17.0}});
    for (double x = -2.0; x <= 10.0; x += 0.25) {
        EXPECT_EQ(spline(row, x).y, 1.0 + 2.0 * x) << x;
        EXPECT_EQ(linear(row, x).y, 1.0 + 2.0 * x) << x;
    }
}

TEST(Curve, EveryKnotGivesItsOwnValue) {
    CurveRow row = rowOf(0, {{0.0, 0.1}, {5.0, -0.7}, {10.0, 0.3}, {15.0, 1e-9}});
    for (const CurveKnot& knot : std::vector<CurveKnot>(row.knots)) {
        EXPECT_EQ(bitsOf(spline(row, knot.x).y), bitsOf(knot.y));
        EXPECT_EQ(bitsOf(linear(row, knot.x).y), bitsOf(knot.y));
    }
}

TEST(Curve, LineGoesOnBeyondBothEnds) {
    const CurveRow row = rowOf(0, {{0.0, 0.0}, {1.0, 1.0}, {2.0, 5.0}});
    EXPECT_EQ(linear(row, -10.0).y, -10.0);
    EXPECT_EQ(linear(row, 12.0).y, 45.0);
}

// 0, 0, 1 at 0, 1, 2 has y2 = 3/2 in the middle and 0 at the ends.
TEST(Spline, OnlyTheSecondCurvatureTermIsScaled) {
    CurveRow row = rowOf(0, {{0.0, 0.0}, {1.0, 0.0}, {2.0, 1.0}});
    // The middle knot is the second of its interval: (1/8 - 1/2) * 3/2 / 6.
    EXPECT_EQ(spline(row, 0.5).y, -0.375 * 1.5 / 6.0);
    EXPECT_EQ(row.knots[1].y2, 1.5);
    // It is the first of the next one: 1/2 + (1/8 - 1/2) * 3/2, not divided by 6.
    EXPECT_EQ(spline(row, 1.5).y, 0.5 - 0.375 * 1.5);
}

TEST(Spline, BeyondTheEndsTheLastIntervalsCubicGoesOn) {
    CurveRow row = rowOf(0, {{0.0, 0.0}, {1.0, 0.0}, {2.0, 1.0}});
    // x = 3: A = -1, B = 2; A^3 - A = 0. x = -1: A = 2, B = -1; B^3 - B = 0.
    EXPECT_EQ(spline(row, 3.0).y, 2.0);
    EXPECT_EQ(spline(row, -1.0).y, 0.0);
    // x = 4: A = -2, B = 3: 3 + (-8 + 2) * 3/2.
    EXPECT_EQ(spline(row, 4.0).y, -6.0);
    // x = -2: A = 3, B = -2: (-8 + 2) * 3/2 / 6.
    EXPECT_EQ(spline(row, -2.0).y, -1.5);
}

TEST(Spline, DirtyRowIsBuiltByItsNextEvaluation) {
    CurveRow row = rowOf(0, {{0.0, 0.0}, {1.0, 0.0}, {2.0, 1.0}});
    spline(row, 0.5);
    EXPECT_EQ(row.dirty, 0);
    row.knots[2].y = 2.0;
    EXPECT_EQ(spline(row, 0.5).y, -0.375 * 1.5 / 6.0); // nobody said that the knots changed
    row.dirty = 1;
    EXPECT_EQ(spline(row, 0.5).y, -0.375 * 3.0 / 6.0);
    EXPECT_EQ(row.dirty, 0);
}

TEST(Spline, BuildingATableLeavesRowsThatAreNotDirtyAlone) {
    CalibrationTable table =
        tableOf({rowOf(0, {{0.0, 0.0}, {1.0, 1.0}, {2.0, 4.0}}), rowOf(1, {{0.0, 0.0}, {1.0, 1.0}, {2.0, 4.0}})});
    table.rows[0].dirty = 0;
    table.rows[1].dirty = 1;
    BuildSplines(table);
    EXPECT_EQ(table.rows[0].knots[1].y2, kNone);
    EXPECT_NE(table.rows[1].knots[1].y2, kNone);
}

TEST(Spline, BuildingFewerThanTwoKnotsLeavesThemAlone) {
    CurveRow row = rowOf(0, {{1.0, 2.0}});
    EXPECT_FALSE(BuildSpline(row));
    EXPECT_EQ(row.dirty, 0);
    EXPECT_EQ(row.knots[0].y2, kNone);
}

TEST(Spline, CurvatureWithoutValueMakesTheIntervalStraight) {
    CurveRow row = rowOf(0, {{0.0, 0.0}, {1.0, 1.0}, {2.0, 0.0}});
    BuildSpline(row);
    row.knots[1].y2 = kNone; // as a host may leave it
    EXPECT_EQ(spline(row, 0.5).y, 0.5);
    EXPECT_EQ(spline(row, 1.75).y, 0.25);
}

TEST(Spline, MissingEndOfAnIntervalGivesTheOtherEndsValue) {
    CurveRow row = rowOf(0, {{0.0, 1.0}, {1.0, kNone}, {2.0, 3.0}});
    EXPECT_EQ(spline(row, 0.25).y, 1.0);
    EXPECT_EQ(spline(row, 1.75).y, 3.0);
    EXPECT_FALSE(spline(row, 1.0).holds); // at the knot itself
    EXPECT_EQ(spline(row, 0.0).y, 1.0);
    EXPECT_EQ(spline(row, -5.0).y, 1.0);
    EXPECT_EQ(spline(row, 5.0).y, 3.0);
}

TEST(Spline, BothEndsMissingGiveNoValue) {
    CurveRow row = rowOf(0, {{0.0, 1.0}, {1.0, kNone}, {2.0, kNone}, {3.0, 1.0}});
    EXPECT_FALSE(spline(row, 1.5).holds);
    CurveRow empty = rowOf(0, {{0.0, kNone}, {1.0, kNone}});
    EXPECT_FALSE(spline(empty, 0.5).holds);
}

TEST(Spline, SkippedKnotKeepsWhatAnEarlierBuildLeft) {
    CurveRow row = rowOf(0, {{0.0, 0.0}, {1.0, kNone}, {2.0, 0.0}, {3.0, 0.0}, {4.0, 1.0}});
    BuildSpline(row);
    // Knot 2 is skipped: it starts from NO_VALUE, which the back substitution multiplies.
    const double sig = 0.5;
    const double p = sig * kNone + 2.0;
    const double y2 = 6.0 * 1.0 / 2.0 / p;
    EXPECT_EQ(row.knots[3].y2, y2);
    EXPECT_EQ(row.knots[2].y2, kNone * y2);
    EXPECT_EQ(row.knots[1].y2, 0.0);
    EXPECT_EQ(row.knots[0].y2, 0.0);
    const double stale = row.knots[2].y2;
    BuildSpline(row); // goes on from there
    EXPECT_EQ(row.knots[3].y2, 3.0 / (sig * stale + 2.0));
    EXPECT_EQ(row.knots[2].y2, stale * row.knots[3].y2);
}

TEST(Line, MissingEndOfAnIntervalGivesNoValue) {
    const CurveRow row = rowOf(0, {{0.0, 1.0}, {1.0, kNone}, {2.0, 3.0}, {3.0, 4.0}});
    EXPECT_FALSE(linear(row, 0.25).holds);
    EXPECT_FALSE(linear(row, 1.75).holds);
    EXPECT_FALSE(linear(row, 1.0).holds);
    EXPECT_EQ(linear(row, 0.0).y, 1.0);
    EXPECT_EQ(linear(row, 2.5).y, 3.5);
}

TEST(Curve, EqualPositionsEndTheSearch) {
    CurveRow row = rowOf(0, {{2.0, 1.0}, {2.0, 5.0}, {2.0, 7.0}});
    EXPECT_EQ(linear(row, 3.0).y, 5.0); // the pair is taken with the higher index first
    EXPECT_EQ(linear(row, 1.0).y, 7.0);
    EXPECT_FALSE(spline(row, 3.0).holds); // an interval of no width
    CurveRow pair = rowOf(0, {{2.0, 1.0}, {2.0, 5.0}});
    EXPECT_EQ(spline(pair, 2.0).y, 1.0);
    EXPECT_EQ(linear(pair, 2.0).y, 5.0);
}

TEST(Curve, AnyNumbersInAnyOrderEnd) {
    std::mt19937 random(11);
    const double odd[] = {kNone, kNaN, kInfinity, -kInfinity, 0.0, -0.0, 1e308, -1e308, 5e-324, 1.0, 2.0, 3.0, -7.5};
    const auto pick = [&] { return odd[random() % std::size(odd)]; };
    for (int round = 0; round < 20000; ++round) {
        CalibrationTable table;
        table.linear = static_cast<std::uint8_t>(random() % 2);
        table.rows.resize(random() % 6);
        for (CurveRow& row : table.rows) {
            row.rowValue = pick();
            row.dirty = 1;
            row.knots.resize(random() % 9);
            for (CurveKnot& knot : row.knots) knot = {pick(), pick(), pick()};
        }
        const Outcome found = across(table, pick(), pick());
        ASSERT_TRUE(found.holds || found.y == kNone);
    }
}

TEST(Curve, RowBeyondTheLimitCountsItsFirstKnotsOnly) {
    CurveRow row;
    row.dirty = 1;
    for (std::size_t k = 0; k < kMostKnots + 500; ++k)
        row.knots.push_back({static_cast<double>(k), k < kMostKnots ? 2.0 : 99.0, NO_VALUE});
    EXPECT_EQ(spline(row, 1e6).y, 2.0);
    EXPECT_EQ(linear(row, 1e6).y, 2.0);
    EXPECT_EQ(row.knots[kMostKnots].y2, kNone);
    row.knots.resize(kMostKnots);
    EXPECT_EQ(spline(row, 3.5).y, 2.0);
}

// --- shape

TEST(Shape, SizesRowsAxisAndKnotsAndMarksRowsDirty) {
    CalibrationTable table;
    ShapeTable(table, 3, 4);
    ASSERT_EQ(table.rows.size(), 3U);
    EXPECT_EQ(table.columns.size(), 4U);
    for (const CurveRow& row : table.rows) {
        EXPECT_EQ(row.knots.size(), 4U);
        EXPECT_EQ(row.dirty, 1);
    }
    ShapeTable(table, 1, 2);
    EXPECT_EQ(table.rows.size(), 1U);
    EXPECT_EQ(table.rows[0].knots.size(), 2U);
}

TEST(Shape, NothingHappensWithoutRowsOrColumnsOrBeyondTheLimits) {
    CalibrationTable table;
    ShapeTable(table, 2, 2);
    ShapeTable(table, 0, 5);
    ShapeTable(table, 5, 0);
    ShapeTable(table, kMostRows + 1, 2);
    ShapeTable(table, 2, kMostKnots + 1);
    EXPECT_EQ(table.rows.size(), 2U);
    EXPECT_EQ(table.columns.size(), 2U);
    ShapeTable(table, kMostRows, kMostKnots);
    EXPECT_EQ(table.rows.size(), kMostRows);
}

// --- a row of a table

TEST(Row, OutsideTheTableGivesNoValue) {
    CalibrationTable table = tableOf({rowOf(0, {{0.0, 1.0}})});
    double y = 0.0;
    EXPECT_TRUE(EvalRow(table, 0, 5.0, y));
    EXPECT_FALSE(EvalRow(table, 1, 5.0, y));
    EXPECT_EQ(y, kNone);
    EXPECT_FALSE(EvalRow(table, static_cast<std::size_t>(-1), 5.0, y));
}

TEST(Row, IsStraightExactlyWhenTheTableIsLinear) {
    CalibrationTable table = tableOf({rowOf(0, {{0.0, 0.0}, {1.0, 0.0}, {2.0, 1.0}})});
    double y = 0.0;
    EvalRow(table, 0, 1.5, y);
    EXPECT_EQ(y, 0.5 - 0.375 * 1.5);
    table.linear = 1;
    EvalRow(table, 0, 1.5, y);
    EXPECT_EQ(y, 0.5);
    table.linear = 0x80; // any flag but 0
    EvalRow(table, 0, 1.5, y);
    EXPECT_EQ(y, 0.5);
}

// --- two inputs

CurveRow constantRow(double rowValue, double y) {
    return rowOf(rowValue, {{0.0, y}});
}

TEST(TwoInputs, TableWithoutRowsGivesNoValue) {
    CalibrationTable table;
    const Outcome found = across(table, 1.0, 1.0);
    EXPECT_FALSE(found.holds);
    EXPECT_EQ(found.y, kNone);
}

TEST(TwoInputs, OneRowOrNoSecondInputTakesTheFirstRow) {
    CalibrationTable one = tableOf({constantRow(5.0, 1.0)});
    EXPECT_EQ(across(one, 0.0, 99.0).y, 1.0);
    CalibrationTable two = tableOf({constantRow(5.0, 1.0), constantRow(6.0, 2.0)});
    EXPECT_EQ(across(two, 0.0, kNone).y, 1.0);
}

TEST(TwoInputs, OutsideTheRowsTheNearestEndRowCounts) {
    for (const bool straight : {false, true}) {
        CalibrationTable table =
            tableOf({constantRow(5.0, 1.0), constantRow(10.0, 2.0), constantRow(15.0, 7.0)}, straight);
        EXPECT_EQ(across(table, 0.0, -100.0).y, 1.0);
        EXPECT_EQ(across(table, 0.0, 5.0).y, 1.0);
        EXPECT_EQ(across(table, 0.0, 10.0).y, 2.0);
        EXPECT_EQ(across(table, 0.0, 15.0).y, 7.0);
        EXPECT_EQ(across(table, 0.0, 1e9).y, 7.0);
        EXPECT_EQ(across(table, 0.0, kInfinity).y, 7.0);
    }
}

TEST(TwoInputs, RowsInDescendingOrderAreHeldInTheirRangeToo) {
    CalibrationTable table = tableOf({constantRow(10.0, 2.0), constantRow(5.0, 1.0)}, true);
    EXPECT_EQ(across(table, 0.0, 99.0).y, 2.0);
    EXPECT_EQ(across(table, 0.0, -99.0).y, 1.0);
    EXPECT_EQ(across(table, 0.0, 7.5).y, 1.5);
}

TEST(TwoInputs, MissingRowValueAtEitherEndSendsAllToTheFirstRow) {
    CalibrationTable last = tableOf({constantRow(5.0, 1.0), constantRow(10.0, 2.0), constantRow(kNone, 3.0)});
    EXPECT_EQ(across(last, 0.0, 10.0).y, 1.0);
    CalibrationTable first = tableOf({constantRow(kNone, 1.0), constantRow(10.0, 2.0), constantRow(20.0, 3.0)});
    // r becomes 32767, which lies above all rows: the search ends at the last two, and r is neither's value.
    double y = 0.0;
    EXPECT_TRUE(EvalTable(first, 0.0, 15.0, y));
    const double t = (kNone - 10.0) / (20.0 - 10.0);
    double expected = 0.0;
    BlendRows(1.0, 2.0, 3.0, 3.0, t, expected);
    EXPECT_EQ(bitsOf(y), bitsOf(expected));
    CalibrationTable two = tableOf({constantRow(kNone, 1.0), constantRow(10.0, 2.0)});
    EXPECT_EQ(across(two, 0.0, 10.0).y, 1.0);
    CalibrationTable both = tableOf({constantRow(kNone, 1.0), constantRow(kNone, 2.0)});
    EXPECT_EQ(across(both, 0.0, 10.0).y, 1.0); // equal row values
}

TEST(TwoInputs, EqualRowValuesTakeTheLowerRow) {
    CalibrationTable table = tableOf({constantRow(5.0, 1.0), constantRow(5.0, 2.0)});
    EXPECT_EQ(across(table, 0.0, 5.0).y, 1.0);
    EXPECT_EQ(across(table, 0.0, 9.0).y, 1.0);
}

TEST(TwoInputs, MissingValueInEitherRowGivesNone) {
    CalibrationTable low = tableOf({constantRow(5.0, kNone), constantRow(10.0, 2.0)});
    EXPECT_FALSE(across(low, 0.0, 7.0).holds);
    EXPECT_EQ(across(low, 0.0, 7.0).y, kNone);
    EXPECT_TRUE(across(low, 0.0, 10.0).holds);
    CalibrationTable high = tableOf({constantRow(5.0, 1.0), constantRow(10.0, kNone)});
    EXPECT_FALSE(across(high, 0.0, 7.0).holds);
    EXPECT_EQ(across(high, 0.0, 7.0).y, kNone);
    EXPECT_EQ(across(high, 0.0, 5.0).y, 1.0);
}

TEST(TwoInputs, EqualValuesOfBothRowsAreTheResultWhateverTheOuterRows) {
    CalibrationTable table =
        tableOf({constantRow(0.0, 50.0), constantRow(5.0, 0.1), constantRow(10.0, 0.1), constantRow(15.0, -90.0)});
    EXPECT_EQ(bitsOf(across(table, 0.0, 7.3).y), bitsOf(0.1));
}

TEST(TwoInputs, SmoothTableLooksAtTheOuterRows) {
    CalibrationTable table =
        tableOf({constantRow(0.0, 0.0), constantRow(1.0, 1.0), constantRow(2.0, 0.0), constantRow(3.0, 1.0)});
    EXPECT_EQ(across(table, 0.0, 1.5).y, 0.5); // by symmetry
    EXPECT_EQ(across(table, 0.0, 1.25).y, 27.0 / 32.0);
    EXPECT_EQ(across(table, 0.0, 0.5).y, 0.5625); // no row below: its own value counts
    EXPECT_EQ(across(table, 0.0, 2.5).y, 0.4375); // no row above
}

TEST(TwoInputs, MissingOuterValueIsReplacedByTheNearerRow) {
    CalibrationTable with =
        tableOf({constantRow(0.0, kNone), constantRow(1.0, 1.0), constantRow(2.0, 0.0), constantRow(3.0, kNone)});
    CalibrationTable without = tableOf({constantRow(1.0, 1.0), constantRow(2.0, 0.0)});
    for (const double r : {1.1, 1.5, 1.9}) EXPECT_EQ(bitsOf(across(with, 0.0, r).y), bitsOf(across(without, 0.0, r).y));
}

TEST(TwoInputs, NaNAsRowInputIsNoIndexOutOfRange) {
    CalibrationTable table = tableOf({constantRow(0.0, 0.0), constantRow(1.0, 1.0), constantRow(2.0, 3.0)});
    EXPECT_TRUE(std::isnan(across(table, 0.0, kNaN).y));
    table.linear = 1;
    EXPECT_TRUE(std::isnan(across(table, 0.0, kNaN).y));
}

// --- blend

TEST(Blend, GoesThroughTheInnerPoints) {
    double y = 0.0;
    EXPECT_TRUE(BlendRows(7.0, 1.25, -3.5, 100.0, 0.0, y));
    EXPECT_EQ(y, 1.25);
    EXPECT_TRUE(BlendRows(7.0, 1.25, -3.5, 100.0, 1.0, y));
    EXPECT_EQ(y, -3.5);
}

TEST(Blend, ReproducesAParabolaExactly) {
    double y = 0.0;
    for (const double t : {0.125, 0.25, 0.5, 0.75}) {
        BlendRows(1.0, 0.0, 1.0, 4.0, t, y); // t * t
        EXPECT_EQ(y, t * t);
    }
}

TEST(Blend, MissingInnerPointGivesNoValue) {
    double y = 0.0;
    EXPECT_FALSE(BlendRows(1.0, kNone, 2.0, 3.0, 0.5, y));
    EXPECT_EQ(y, kNone);
    y = 0.0;
    EXPECT_FALSE(BlendRows(1.0, 2.0, kNone, 3.0, 0.5, y));
    EXPECT_EQ(y, kNone);
}

TEST(Blend, MissingOuterPointIsTheNearerInnerOne) {
    double missing = 0.0;
    double given = 0.0;
    BlendRows(kNone, 1.0, 2.0, kNone, 0.3, missing);
    BlendRows(1.0, 1.0, 2.0, 2.0, 0.3, given);
    EXPECT_EQ(bitsOf(missing), bitsOf(given));
}

} // namespace
} // namespace tallowmere::test

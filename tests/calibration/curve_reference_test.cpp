// Curves against values worked out apart from the library (make_curve_reference.py tells how).
#include "tests/calibration/calibration_fixture.hpp"

#include <algorithm>
#include <cmath>
#include <vector>

namespace tallowmere::test {
namespace {

struct ReferencePlace {
    double x;
    double splineExact;
    double splineBits;
    double lineExact;
    double lineBits;
};
struct ReferenceCurve {
    const char* name;
    std::vector<double> x;
    std::vector<double> y;
    std::vector<ReferencePlace> places;
};
struct ReferencePoint {
    double x;
    double r;
    double smoothExact;
    double smoothBits;
    double straightExact;
    double straightBits;
};

#include "tests/calibration/curve_reference.inc"

CurveRow rowOf(const std::vector<double>& x, const std::vector<double>& y) {
    CurveRow row;
    row.dirty = 1;
    for (std::size_t k = 0; k < x.size(); ++k) row.knots.push_back({x[k], y[k], NO_VALUE});
    return row;
}

CurveRow reversed(CurveRow row) {
    std::ranges::reverse(row.knots);
    return row;
}

/// Some dozens of roundings, of terms that may be larger than their sum: beyond the ends they nearly cancel.
double tolerance(const ReferenceCurve& curve, double x) {
    const double span = curve.x.back() - curve.x.front();
    const double beyond = std::max({0.0, curve.x.front() - x, x - curve.x.back()}) / span;
    return 1e-11 * (1.0 + 1e4 * beyond * beyond * beyond);
}

void expectBits(double found, double expected, const ReferenceCurve& curve, double x) {
    EXPECT_EQ(bitsOf(found), bitsOf(expected)) << curve.name << " at " << x << ": " << found << " " << expected;
}

TEST(CurveReference, HoldsEnoughCurves) {
    EXPECT_GE(kReferenceCurves.size(), 18U);
    EXPECT_GE(kTablePoints.size(), 80U);
}

TEST(CurveReference, SplineIsNearTheExactOne) {
    for (const ReferenceCurve& curve : kReferenceCurves) {
        CurveRow row = rowOf(curve.x, curve.y);
        for (const ReferencePlace& place : curve.places) {
            double y = 0.0;
            EXPECT_EQ(EvalSpline(row, place.x, y), place.splineExact != NO_VALUE);
            EXPECT_NEAR(y, place.splineExact, tolerance(curve, place.x) * std::max(1.0, std::fabs(place.splineExact)))
                << curve.name << " at " << place.x;
        }
    }
}

TEST(CurveReference, SplineHasTheBitsOfTheFormulasInTheirOrder) {
    for (const ReferenceCurve& curve : kReferenceCurves) {
        CurveRow row = rowOf(curve.x, curve.y);
        for (const ReferencePlace& place : curve.places) {
            double y = 0.0;
            EvalSpline(row, place.x, y);
            expectBits(y, place.splineBits, curve, place.x);
        }
    }
}

TEST(CurveReference, LineIsNearTheExactOneAndHasTheBitsOfTheFormula) {
    for (const ReferenceCurve& curve : kReferenceCurves) {
        const CurveRow row = rowOf(curve.x, curve.y);
        for (const ReferencePlace& place : curve.places) {
            double y = 0.0;
            EXPECT_EQ(EvalLinear(row, place.x, y), place.lineExact != NO_VALUE);
            EXPECT_NEAR(y, place.lineExact, 1e-12 * std::max(1.0, std::fabs(place.lineExact))) << curve.name;
            expectBits(y, place.lineBits, curve, place.x);
        }
    }
}

TEST(CurveReference, DescendingKnotsGiveTheSameBits) {
    for (const ReferenceCurve& curve : kReferenceCurves) {
        CurveRow row = reversed(rowOf(curve.x, curve.y));
        for (const ReferencePlace& place : curve.places) {
            double y = 0.0;
            EvalSpline(row, place.x, y);
            expectBits(y, place.splineBits, curve, place.x);
            EvalLinear(row, place.x, y);
            expectBits(y, place.lineBits, curve, place.x);
        }
    }
}

CalibrationTable referenceTable(bool linear) {
    CalibrationTable table;
    table.linear = linear ? 1 : 0;
    for (std::size_t j = 0; j < kTableRowValues.size(); ++j) {
        table.rows.push_back(rowOf(kTableColumns, kTableValues[j]));
        table.rows.back().rowValue = kTableRowValues[j];
    }
    return table;
}

TEST(CurveReference, TwoInputsBlendFourRows) {
    CalibrationTable table = referenceTable(false);
    for (const ReferencePoint& point : kTablePoints) {
        double y = 0.0;
        EXPECT_TRUE(EvalTable(table, point.x, point.r, y));
        EXPECT_NEAR(y, point.smoothExact, 1e-10) << point.x << " " << point.r;
        EXPECT_EQ(bitsOf(y), bitsOf(point.smoothBits)) << point.x << " " << point.r;
    }
}

TEST(CurveReference, TwoInputsOfALinearTableAreStraightBothWays) {
    CalibrationTable table = referenceTable(true);
    for (const ReferencePoint& point : kTablePoints) {
        double y = 0.0;
        EXPECT_TRUE(EvalTable(table, point.x, point.r, y));
        EXPECT_NEAR(y, point.straightExact, 1e-12) << point.x << " " << point.r;
        EXPECT_EQ(bitsOf(y), bitsOf(point.straightBits)) << point.x << " " << point.r;
    }
}

} // namespace
} // namespace tallowmere::test

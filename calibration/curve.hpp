// Calibration curves: rows of knots, evaluated along one row or across rows.
//
// NO_VALUE (32767.0) stands for a missing value everywhere and is never interpolated through. Every function
// takes any numbers, NaN and infinities too, in any order, and ends; what comes of unordered or equal
// positions is whatever the formulas give, a NaN perhaps. Nothing here allocates but ShapeTable, and nothing raises a
// floating-point exception but a signalling NaN.
//
// Threads: evaluating builds a row's spline first when the row is dirty, so a table with dirty rows belongs to
// one thread. After BuildSplines nothing is dirty, and any number of threads may evaluate at once until
// somebody edits the table.
#pragma once

#include "core/channels/catalogue.hpp"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tallowmere {

/// Limits of a table. A reader drops what exceeds them; of a longer row the functions see the first knots
/// only. They bound the memory that a file can claim (3 MB a table), and they keep the builder's working
/// numbers on the stack, so that a spline can be rebuilt while a value is written, which must not allocate.
inline constexpr std::size_t kMostKnots = 512; // a row
inline constexpr std::size_t kMostRows = 256;  // a table

struct CurveKnot {
    double x = NO_VALUE;  // position
    double y = NO_VALUE;  // value; NO_VALUE: none at this knot
    double y2 = NO_VALUE; // second derivative, made by BuildSpline
};

/// A curve. Whoever changes `knots` sets `dirty`.
struct CurveRow {
    double rowValue = NO_VALUE;   // the second input's value that the curve stands for
    std::uint8_t dirty = 0;       // 1: the knots have changed since the spline was built
    std::vector<CurveKnot> knots; // by x, ascending or descending
    // Made by BuildSpline.
    std::uint8_t moderate = 0;  // 1: no number here makes a formula invalid or too large
    std::uint8_t ascending = 0; // 1: moderate, and each position exceeds the one before
};

struct CalibrationTable {
    std::vector<CurveKnot> columns; // one per column; its y is the column's position
    std::vector<CurveRow> rows;     // by rowValue, ascending
    std::uint8_t linear = 0;        // 1: straight lines instead of splines
    std::uint8_t sharedColumns = 0; // 1: every row's knot k lies at the position of column k
    std::uint8_t changed = 0;       // 1: the table holds something else than its file
};

/// Gives the table this many rows, and the column axis and every row this many knots. Does nothing when
/// either is 0 or beyond the limits.
void ShapeTable(CalibrationTable& table, std::size_t rows, std::size_t columns);

/// Makes the y2 of every knot: the natural cubic spline (second derivative 0 at both ends) by the usual
/// tridiagonal sweep (Press, Teukolsky, Vetterling, Flannery: Numerical Recipes, section 3.3). Missing values
/// split it: a knot beside one is skipped and keeps its y2, and where either of two neighbours is missing the
/// lower one's y2 becomes 0. Clears `dirty`. False, with nothing else changed, for fewer than two knots.
/// The sweep goes up the positions, so that a row gives the same bits in either order.
bool BuildSpline(CurveRow& row) noexcept;

/// Builds every row that is dirty. After this the table may be evaluated by any number of threads.
void BuildSplines(CalibrationTable& table) noexcept;

/// The spline at x; beyond the ends the formula of the last interval. One knot: its y, for every x.
/// Beside a missing value the other end's y. Builds the row first when it is dirty.
/// True when y is a value; else y is NO_VALUE.
bool EvalSpline(CurveRow& row, double x, double& y) noexcept;

/// The straight line between the two knots about x, and beyond the ends the line of the last interval. One
/// knot: its y, for every x. True when y is a value; else y is NO_VALUE.
bool EvalLinear(const CurveRow& row, double x, double& y) noexcept;

/// One row, by the table's `linear` flag. False with NO_VALUE for a row that is not there.
bool EvalRow(CalibrationTable& table, std::size_t rowIndex, double x, double& y) noexcept;

/// Two inputs: x along the rows, r across them. With r at NO_VALUE, or one row only, the first row. Outside
/// the rows the nearest one; between two rows a straight line (`linear`) or the blend of four rows.
/// True when y is a value; else y is NO_VALUE.
bool EvalTable(CalibrationTable& table, double x, double r, double& y) noexcept;

/// The cubic of Catmull and Rom ("A class of local interpolating splines", 1974) through p1 at t = 0 and p2
/// at t = 1, with p0 and p3 as their outer neighbours; a missing neighbour is replaced by the nearer end.
/// False with NO_VALUE when p1 or p2 is missing.
bool BlendRows(double p0, double p1, double p2, double p3, double t, double& y) noexcept;

} // namespace tallowmere

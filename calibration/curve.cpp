#include "calibration/curve.hpp"

#include "core/channels/held_exceptions.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <span>

namespace tallowmere {
namespace {

std::span<const CurveKnot> knotsOf(const CurveRow& row) noexcept {
    return {row.knots.data(), std::min(row.knots.size(), kMostKnots)};
}

/// True when the positions ascend, as told by the two ends.
bool ascends(std::span<const CurveKnot> knots) noexcept {
    return std::isgreater(knots.back().x, knots.front().x);
}

/// The two knots about a position. In an ordered row `a` is the one with the smaller position.
struct Interval {
    const CurveKnot& a;
    const CurveKnot& b;
};

/// The interval that holds x, or the first or last one when x lies outside. At least one knot; with one,
/// it is both ends.
// Lower end and length, not two ends: so g++ makes branches of it, which are well predicted, since readings
// change little from one to the next; with conditional moves each step would wait for the one before.
inline Interval findInterval(std::span<const CurveKnot> knots, double x) noexcept {
    const bool ascending = ascends(knots);
    const CurveKnot* low = knots.data();
    std::size_t length = knots.size() - 1;
    while (length > 1) {
        const std::size_t half = length / 2;
        if (std::isgreater(low[half].x, x) == ascending) {
            length = half;
        } else {
            low += half;
            length -= half;
        }
    }
    return ascending ? Interval{low[0], low[length]} : Interval{low[length], low[0]};
}

double linearBetween(const CurveKnot& a, const CurveKnot& b, double x) noexcept {
    if (x == a.x) return a.y;
    if (x == b.x) return b.y;
    if (a.x == b.x) return a.y;
    if (a.y == NO_VALUE || b.y == NO_VALUE) return NO_VALUE;
    return a.y + (b.y - a.y) * (x - a.x) / (b.x - a.x);
}

/// The cubic between two knots that have their values, over an interval that has a width.
inline double cubicBetween(const CurveKnot& a, const CurveKnot& b, double x) noexcept {
    const double h = b.x - a.x;
    const double A = (b.x - x) / h;
    const double B = (x - a.x) / h;
    // KEPT: h*h/6 scales the second curvature term only. Pinned by Spline.OnlyTheSecondCurvatureTermIsScaled.
    return A * a.y + B * b.y + (A * A * A - A) * a.y2 + (B * B * B - B) * b.y2 * h * h / 6.0;
}

double splineBetween(const CurveKnot& a, const CurveKnot& b, double x) noexcept {
    if (x == b.x) return b.y;
    if (x == a.x) return a.y;
    if (b.x - a.x == 0.0) return NO_VALUE;
    if (a.y2 == NO_VALUE || b.y2 == NO_VALUE) return linearBetween(a, b, x);
    if (a.y == NO_VALUE) return b.y;
    if (b.y == NO_VALUE) return a.y;
    return cubicBetween(a, b, x);
}

constexpr double kNarrowest = 1e-30; // between two positions, for moderate results

/// True when no formula fails between two neighbours or anywhere near them.
bool areModerate(const CurveKnot& a, const CurveKnot& b) noexcept {
    for (const CurveKnot& knot : {a, b})
        if (!isModerate(knot.x) || !isModerate(knot.y) || !isModerate(knot.y2)) return false;
    return std::fabs(b.x - a.x) >= kNarrowest;
}

bool hasModerateKnots(std::span<const CurveKnot> knots) noexcept {
    for (std::size_t k = 1; k < knots.size(); ++k)
        if (!areModerate(knots[k - 1], knots[k])) return false;
    return true;
}

/// True for the usual row: up the positions, no two of them equal.
bool isAscending(std::span<const CurveKnot> knots) noexcept {
    for (std::size_t k = 1; k < knots.size(); ++k)
        if (!(knots[k].x > knots[k - 1].x)) return false;
    return true;
}

/// As a comparison of bits: NO_VALUE has one pattern, and this needs no second look for NaN.
bool isMissing(double value) noexcept {
    return std::bit_cast<std::uint64_t>(value) == std::bit_cast<std::uint64_t>(double{NO_VALUE});
}

constexpr std::ptrdiff_t kFewKnots = 8; // about as many are faster seen one by one than halved

/// The spline of an ascending row of at least two knots, at a moderate x.
inline double evalAscending(const CurveRow& row, double x) noexcept {
    const CurveKnot* low = row.knots.data();
    const CurveKnot* last = &row.knots.back();
    while (last - low > kFewKnots) {
        const CurveKnot* const middle = low + (last - low) / 2;
        (middle->x > x ? last : low) = middle;
    }
    while (low + 1 != last && !(low[1].x > x)) ++low; // well predicted: a reading lies near the one before
    const CurveKnot& a = low[0];
    const CurveKnot& b = low[1];
    if (x == b.x) return b.y;
    if (x == a.x) return a.y;
    if (isMissing(a.y) || isMissing(b.y) || isMissing(a.y2) || isMissing(b.y2)) return splineBetween(a, b, x);
    return cubicBetween(a, b, x);
}

using Between = double(const CurveKnot& a, const CurveKnot& b, double x) noexcept;

/// A curve of any row, by its formula between two knots.
template <Between between> [[gnu::noinline]] double curveOf(const CurveRow& row, double x) noexcept {
    const std::span<const CurveKnot> knots = knotsOf(row);
    if (knots.empty()) return NO_VALUE;
    if (knots.size() == 1) return knots.front().y;
    const Interval interval = findInterval(knots, x);
    return between(interval.a, interval.b, x);
}

/// The same at any x.
template <Between between> [[gnu::noinline]] double evalAny(const CurveRow& row, double x) noexcept {
    if (row.dirty == 0 && row.moderate != 0 && isModerate(x)) return curveOf<between>(row, x);
    return withExceptionsHeld([&] { return curveOf<between>(row, x); });
}

/// The knots of a row from the smallest position up, however they are stored.
class UpThePositions {
  public:
    explicit UpThePositions(std::span<CurveKnot> knots) noexcept : knots_(knots), ascending_(ascends(knots)) {}
    [[nodiscard]] std::size_t size() const noexcept { return knots_.size(); }
    CurveKnot& operator[](std::size_t k) const noexcept { return knots_[ascending_ ? k : knots_.size() - 1 - k]; }

  private:
    std::span<CurveKnot> knots_;
    bool ascending_;
};

using Scratch = std::array<double, kMostKnots>;

/// Forward half of the sweep: factors into y2, right-hand sides into u.
void decompose(const UpThePositions& knots, Scratch& u) noexcept {
    knots[0].y2 = 0.0;
    for (std::size_t i = 1; i + 1 < knots.size(); ++i) {
        const CurveKnot& below = knots[i - 1];
        const CurveKnot& above = knots[i + 1];
        CurveKnot& here = knots[i];
        // KEPT: a knot beside a missing value keeps the y2 of an earlier build.
        if (below.y == NO_VALUE || here.y == NO_VALUE || above.y == NO_VALUE) continue;
        const double sig = (here.x - below.x) / (above.x - below.x);
        const double p = sig * below.y2 + 2.0;
        here.y2 = (sig - 1.0) / p;
        const double d = (above.y - here.y) / (above.x - here.x) - (here.y - below.y) / (here.x - below.x);
        u[i] = (6.0 * d / (above.x - below.x) - sig * u[i - 1]) / p;
    }
}

/// Backward half: the second derivatives.
void substituteBack(const UpThePositions& knots, const Scratch& u) noexcept {
    knots[knots.size() - 1].y2 = 0.0;
    for (std::size_t k = knots.size() - 1; k-- > 0;) {
        CurveKnot& here = knots[k];
        const CurveKnot& above = knots[k + 1];
        here.y2 = here.y != NO_VALUE && above.y != NO_VALUE ? here.y2 * above.y2 + u[k] : 0.0;
    }
}

/// Makes the y2 of at least two knots.
void sweep(std::span<CurveKnot> knots) noexcept {
    const UpThePositions ordered(knots);
    Scratch u;
    std::fill_n(u.begin(), knots.size(), 0.0);
    decompose(ordered, u);
    substituteBack(ordered, u);
}

/// Holds r between the first and the last row. KEPT: one row of the two without a value sends every r to the
/// first row's value, whichever it is.
double holdInRows(const std::vector<CurveRow>& rows, double r) noexcept {
    const double first = rows.front().rowValue;
    const double last = rows.back().rowValue;
    if (first == NO_VALUE && last == NO_VALUE) return r;
    if (first == NO_VALUE || last == NO_VALUE) return first;
    const double low = std::isless(last, first) ? last : first;
    const double high = std::isless(first, last) ? last : first;
    if (std::isless(r, low)) return low;
    return std::isgreater(r, high) ? high : r;
}

/// Index of the lower of the two rows about r. At least two rows.
std::size_t lowerRow(const std::vector<CurveRow>& rows, double r) noexcept {
    std::size_t low = 0;
    std::size_t high = rows.size() - 1;
    while (high - low > 1) {
        const std::size_t middle = (low + high) / 2;
        (std::isgreater(rows[middle].rowValue, r) ? high : low) = middle;
    }
    return low;
}

// The formulas between rows.
double onLine(double y1, double y2, double t) noexcept {
    return y1 + (y2 - y1) * t;
}
double blended(double p0, double p1, double p2, double p3, double t) noexcept {
    return p1 + (t / 2.0) * ((p2 - p0) + t * ((2.0 * p0 - 5.0 * p1 + 4.0 * p2 - p3) + t * (3.0 * (p1 - p2) + p3 - p0)));
}

/// A formula, worked out as its numbers need it.
template <auto formula, class... Numbers> double workedOut(Numbers... numbers) noexcept {
    const auto work = [&]() noexcept { return formula(numbers...); };
    return (isModerate(numbers) && ...) ? work() : withExceptionsHeld(work);
}

/// Where r lies on the way between two rows of different values: 0 to 1 for one between them.
double wayBetween(double low, double high, double r) noexcept {
    const bool between = std::isless(low, r) && std::isless(r, high) && isModerate(low) && isModerate(high);
    const auto work = [&]() noexcept { return (r - low) / (high - low); };
    return between ? work() : withExceptionsHeld(work);
}

/// The value at t, 0 to 1, of the way from row `low` to the next. y1 and y2 are theirs at x.
bool evalBetweenRows(CalibrationTable& table, std::size_t low, double x, double y1, double y2, double t,
                     double& y) noexcept {
    if (table.linear != 0) {
        y = workedOut<onLine>(y1, y2, t);
        return y != NO_VALUE;
    }
    double before = y1;
    double after = y2;
    if (low >= 1) EvalSpline(table.rows[low - 1], x, before);
    if (low + 2 < table.rows.size()) EvalRow(table, low + 2, x, after);
    return BlendRows(before, y1, y2, after, t, y);
}

} // namespace

void ShapeTable(CalibrationTable& table, std::size_t rows, std::size_t columns) {
    if (rows == 0 || columns == 0 || rows > kMostRows || columns > kMostKnots) return;
    table.columns.resize(columns);
    table.rows.resize(rows);
    for (CurveRow& row : table.rows) {
        row.knots.resize(columns);
        row.dirty = 1;
    }
}

bool BuildSpline(CurveRow& row) noexcept {
    row.dirty = 0;
    row.moderate = 1;
    row.ascending = 0;
    const std::size_t count = std::min(row.knots.size(), kMostKnots);
    if (count < 2) return false;
    withExceptionsHeld([&] { sweep({row.knots.data(), count}); });
    row.moderate = hasModerateKnots(knotsOf(row)) ? 1 : 0;
    row.ascending = row.moderate != 0 && count == row.knots.size() && isAscending(row.knots) ? 1 : 0;
    return true;
}

void BuildSplines(CalibrationTable& table) noexcept {
    for (CurveRow& row : table.rows)
        if (row.dirty != 0) BuildSpline(row);
}

bool EvalSpline(CurveRow& row, double x, double& y) noexcept {
    if (row.dirty != 0) [[unlikely]]
        BuildSpline(row);
    y = row.ascending != 0 && isModerate(x) ? evalAscending(row, x) : evalAny<splineBetween>(row, x);
    return !isMissing(y);
}

bool EvalLinear(const CurveRow& row, double x, double& y) noexcept {
    y = evalAny<linearBetween>(row, x);
    return y != NO_VALUE;
}

bool EvalRow(CalibrationTable& table, std::size_t rowIndex, double x, double& y) noexcept {
    y = NO_VALUE;
    if (rowIndex >= table.rows.size()) return false;
    CurveRow& row = table.rows[rowIndex];
    return table.linear != 0 ? EvalLinear(row, x, y) : EvalSpline(row, x, y);
}

bool EvalTable(CalibrationTable& table, double x, double r, double& y) noexcept {
    y = NO_VALUE;
    const std::vector<CurveRow>& rows = table.rows;
    if (rows.empty()) return false;
    if (r == NO_VALUE || rows.size() == 1) return EvalRow(table, 0, x, y);
    r = holdInRows(rows, r);
    const std::size_t low = lowerRow(rows, r);
    const std::size_t high = low + 1;
    const double lowValue = rows[low].rowValue;
    const double highValue = rows[high].rowValue;
    if (r == lowValue || lowValue == highValue) return EvalRow(table, low, x, y);
    if (r == highValue) return EvalRow(table, high, x, y);

    double y1 = NO_VALUE;
    double y2 = NO_VALUE;
    if (!EvalRow(table, low, x, y1) || !EvalRow(table, high, x, y2)) return false;
    if (y1 == y2) {
        y = y1;
        return true;
    }
    const double t = wayBetween(lowValue, highValue, r);
    return evalBetweenRows(table, low, x, y1, y2, t, y);
}

bool BlendRows(double p0, double p1, double p2, double p3, double t, double& y) noexcept {
    y = NO_VALUE;
    if (p1 == NO_VALUE || p2 == NO_VALUE) return false;
    if (p0 == NO_VALUE) p0 = p1;
    if (p3 == NO_VALUE) p3 = p2;
    y = workedOut<blended>(p0, p1, p2, p3, t);
    return y != NO_VALUE;
}

} // namespace tallowmere

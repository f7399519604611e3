#include "calibration/default_table.hpp"

#include "core/channels/rounding.hpp"

#include <algorithm>
#include <array>
#include <cmath>

namespace tallowmere {
namespace {

constexpr std::size_t kFewestPolarColumns = 10;
constexpr std::size_t kFirstTargetKnot = 2;
constexpr std::size_t kSecondTargetFromEnd = 4;

struct Point {
    double x;
    double y;
};
constexpr std::array<Point, 5> kBrakePoints{{{0.0, 250.0}, {1.5, 150.0}, {3.0, 100.0}, {10.0, 75.0}, {15.0, 60.0}}};

double at(float start, float step, std::size_t k) noexcept {
    return double{start} + static_cast<double>(k) * double{step};
}

/// Brings a target angle into 0 to 180 degrees and rounds it to one decimal place; empty for a NaN.
std::optional<double> roundedTarget(std::optional<double> angle) noexcept {
    if (!angle || std::isnan(*angle)) return std::nullopt;
    return roundHalfAway(std::clamp(*angle, 0.0, 180.0) * 10.0) * 0.1;
}

void change(double& number, double to, CurveRow& row, CalibrationTable& table) noexcept {
    if (number == to) return;
    number = to;
    row.dirty = 1;
    table.changed = 1;
}

/// The definitions whose knots follow the boat's polar.
bool followsPolar(const CalibrationItemDef& definition) noexcept {
    return definition.sharedColumns == 0 && definition.columnInput == ZAN_TWA && definition.rowInput == ZAN_TWS &&
           definition.columns >= kFewestPolarColumns;
}

// KEPT: the target angles become values of the knots, not positions.
void takeTargets(const Polar& polar, CalibrationTable& table) noexcept {
    for (CurveRow& row : table.rows) {
        if (const auto first = roundedTarget(polar.firstTargetAngle(row.rowValue)))
            change(row.knots[kFirstTargetKnot].y, *first, row, table);
        if (const auto second = roundedTarget(polar.secondTargetAngle(row.rowValue)))
            change(row.knots[row.knots.size() - kSecondTargetFromEnd].y, *second, row, table);
    }
}

void takeBrakePoints(CalibrationTable& table) noexcept {
    if (table.rows.size() != 1 || table.rows[0].knots.size() != kBrakePoints.size()) return;
    CurveRow& row = table.rows[0];
    for (std::size_t k = 0; k < kBrakePoints.size(); ++k) {
        change(row.knots[k].y, kBrakePoints[k].y, row, table);
        if (table.sharedColumns == 0) continue;
        change(row.knots[k].x, kBrakePoints[k].x, row, table);
        change(table.columns[k].y, kBrakePoints[k].x, row, table);
    }
}

} // namespace

void buildDefaultTable(const CalibrationItemDef& definition, const Polar* polar, CalibrationTable& table) {
    ShapeTable(table, definition.rows, definition.columns);
    table.sharedColumns = definition.sharedColumns;
    table.changed = 1;
    for (std::size_t k = 0; table.sharedColumns != 0 && k < table.columns.size(); ++k)
        table.columns[k].y = at(definition.columnStart, definition.columnStep, k);
    for (std::size_t j = 0; j < table.rows.size(); ++j) {
        CurveRow& row = table.rows[j];
        row.rowValue = at(definition.rowStart, definition.rowStep, j);
        for (std::size_t k = 0; k < row.knots.size(); ++k)
            row.knots[k] = {at(definition.columnStart, definition.columnStep, k), double{definition.defaultValue}};
    }
    if (polar != nullptr && followsPolar(definition)) takeTargets(*polar, table);
    if (definition.id == static_cast<std::int32_t>(calibration_item::kBrake)) takeBrakePoints(table);
}

} // namespace tallowmere

#include "tools/calibration/chart.hpp"

#include "core/channels/channel_lookup.hpp"
#include "tools/calibration/item_text.hpp"
#include "tools/commands/text.hpp"

#include <algorithm>
#include <cmath>

namespace tallowmere::tools {
namespace {

constexpr std::size_t kMostRows = 24; // drawn; more can't be told apart
constexpr int kSteps = 240;           // places along the axis
constexpr double kLargest = 1e9;      // beyond it nothing measured on a boat lies

bool isDrawable(double value) noexcept {
    return value != NO_VALUE && std::fabs(value) <= kLargest; // false for NaN
}

bool isAngle(std::int32_t channel) noexcept {
    if (!isInput(channel)) return false;
    const UnitClass unitClass = unitClassOf(nullptr, static_cast<std::size_t>(channel));
    return isSignedAngle(unitClass) || unitClass == UnitClass::Bearing;
}

std::string axisTitle(const std::string& name, const std::string& unit) {
    return unit.empty() ? name : name + " (" + unit + ")";
}

/// Grows to hold a value.
class Extent {
  public:
    void add(double value) noexcept {
        low_ = any_ ? std::min(low_, value) : value;
        high_ = any_ ? std::max(high_, value) : value;
        any_ = true;
    }
    /// At least `least` wide.
    [[nodiscard]] Range range(double least) const noexcept {
        if (!any_) return {0.0, least};
        if (high_ - low_ >= least) return {low_, high_};
        const double middle = low_ + (high_ - low_) / 2;
        return {middle - least / 2, middle + least / 2};
    }

  private:
    double low_ = 0;
    double high_ = 0;
    bool any_ = false;
};

std::vector<double> placesBetween(const std::vector<Point>& knots, Range range) {
    std::vector<double> places;
    if (knots.size() >= 2) {
        const auto [low, high] = std::ranges::minmax(knots, {}, &Point::x);
        range = {low.x, high.x};
    }
    for (int step = 0; step <= kSteps; ++step)
        places.push_back(range.low + (range.high - range.low) * static_cast<double>(step) / kSteps);
    for (const Point& knot : knots) places.push_back(knot.x);
    std::ranges::sort(places);
    return places;
}

/// Without inputs the item is one number; its curve is level.
void drawRow(CalibrationItem& item, std::size_t row, Range range, Series& series) {
    bool pen = false;
    for (const double x : placesBetween(series.knots, range)) {
        double y = NO_VALUE;
        const bool drawn = EvalRow(item.table, row, x, y) && isDrawable(y);
        if (drawn && !pen) series.lines.emplace_back();
        if (drawn) series.lines.back().push_back({x, y});
        pen = drawn;
    }
}

std::string rowLabel(const CalibrationItem& item, const CurveRow& row) {
    if (!isInput(item.rowInput)) return "row " + numberText(row.rowValue);
    return inputName(item.rowInput) + " " + quantityText(row.rowValue, inputUnit(item.rowInput));
}

std::string subtitleOf(const CalibrationItem& item) {
    std::string text = item.table.linear != 0 ? "Straight lines" : "Smooth curves";
    text += item.use != 0 ? ", in use" : ", not in use";
    if (item.table.rows.size() > kMostRows)
        text += ", the first " + std::to_string(kMostRows) + " of " + std::to_string(item.table.rows.size()) + " rows";
    return text;
}

void takeKnots(const CalibrationItem& item, Chart& chart) {
    for (std::size_t r = 0; r < std::min(item.table.rows.size(), kMostRows); ++r) {
        Series series;
        series.label = rowLabel(item, item.table.rows[r]);
        for (const CurveKnot& knot : item.table.rows[r].knots) {
            if (isDrawable(knot.x) && isDrawable(knot.y))
                series.knots.push_back({knot.x, knot.y});
            else
                ++chart.left;
        }
        chart.series.push_back(std::move(series));
    }
}

} // namespace

Chart makeChart(std::size_t id, CalibrationItem& item) {
    Chart chart;
    chart.title = std::to_string(id) + " " + printable(item.name);
    chart.subtitle = subtitleOf(item);
    const std::string unit = printable(item.unit);
    chart.xTitle = isInput(item.columnInput) ? axisTitle(inputName(item.columnInput), inputUnit(item.columnInput)) : "";
    chart.yTitle =
        axisTitle(isInput(item.channel) ? "Added to " + inputName(item.channel) : printable(item.name), unit);
    chart.xIsAngle = isAngle(item.columnInput);
    takeKnots(item, chart);

    Extent x;
    Extent y;
    for (const Series& series : chart.series)
        for (const Point& knot : series.knots) x.add(knot.x);
    chart.x = x.range(1e-6);
    if (chart.x.high - chart.x.low < 1e-3) chart.x = x.range(2.0);
    for (std::size_t r = 0; r < chart.series.size(); ++r) {
        Series& series = chart.series[r];
        drawRow(item, r, chart.x, series);
        for (const Point& knot : series.knots) y.add(knot.y);
        for (const auto& line : series.lines)
            for (const Point& point : line) y.add(point.y);
    }
    chart.y = y.range(1e-6);
    if (chart.y.high - chart.y.low < 1e-3) chart.y = y.range(2.0);
    return chart;
}

} // namespace tallowmere::tools

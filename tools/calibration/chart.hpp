// A calibration as curves to be drawn: knots and what the library makes of the places between them.
#pragma once

#include "calibration/calibration.hpp"
#include "tools/chart/ticks.hpp"

#include <string>
#include <vector>

namespace tallowmere::tools {

struct Point {
    double x;
    double y;
};

struct Series {
    std::string label;                     // the row: "AWS 10 kt"
    std::vector<std::vector<Point>> lines; // the curve, in pieces where values are missing
    std::vector<Point> knots;
};

struct Chart {
    std::string title;
    std::string subtitle;
    std::string xTitle;
    std::string yTitle;
    bool xIsAngle = false; // ticks suit a compass
    std::vector<Series> series;
    Range x{0, 1};
    Range y{0, 1};
    std::size_t left = 0; // knots without a value or too large to draw
};

/// Places between the outermost knots are evaluated as on a write. Of a larger table the first 24 rows are
/// drawn; the subtitle says so.
[[nodiscard]] Chart makeChart(std::size_t id, CalibrationItem& item);

} // namespace tallowmere::tools

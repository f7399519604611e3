// A chart as an SVG document.
#pragma once

#include "tools/calibration/chart.hpp"

namespace tallowmere::tools {

/// Complete and well-formed whatever the chart holds; every number in it is finite.
[[nodiscard]] std::string svgChart(const Chart& chart);

} // namespace tallowmere::tools

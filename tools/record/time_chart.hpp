// Channels over time as an SVG document: one panel each, one time axis for all.
#pragma once

#include "tools/record/time_series.hpp"

#include <string>
#include <vector>

namespace tallowmere::recording {

struct TimeChart {
    std::string title;
    std::string subtitle;
    std::int64_t from = 0; // moments, from < to
    std::int64_t to = 0;
    std::vector<TimeSeries> series;
};

/// Complete and well-formed whatever the chart holds.
[[nodiscard]] std::string svgTimeChart(const TimeChart& chart);

} // namespace tallowmere::recording

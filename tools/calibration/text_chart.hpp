// A chart for a terminal, in Braille patterns.
#pragma once

#include "tools/calibration/chart.hpp"

namespace tallowmere::tools {

/// columns   of the terminal; held in 40 to 160
/// colours   with ANSI colour sequences, one colour a row. Knots carry the letter of their row either way.
[[nodiscard]] std::string textChart(const Chart& chart, int columns, bool colours);

} // namespace tallowmere::tools

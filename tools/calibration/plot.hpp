// calibration plot: knots and curves of one item as a picture.
#pragma once

#include "tools/commands/command_context.hpp"

#include <string>

namespace tallowmere::tools {

/// file   an SVG file to write; empty: a picture of characters on the output
int runCalibrationPlot(const CommandContext& context, const std::string& item, const std::string& file);

} // namespace tallowmere::tools

// calibration list, show, eval: the user's calibration in words and numbers.
#pragma once

#include "tools/commands/command_context.hpp"

#include <optional>
#include <string>

namespace tallowmere::tools {

struct EvalOptions {
    std::string item;
    double x = 0;            // the column input's value
    std::optional<double> r; // the row input's value
    bool json = false;
};

/// All items: inputs, whether in use, straight or smooth, size and file of the table, count of problems.
int runCalibrationList(const CommandContext& context, bool json = false);
/// One item's table as loaded.
int runCalibrationShow(const CommandContext& context, const std::string& item, bool json = false);
/// What the table says at a place, and what becomes of a value that is written there. Without `r` the row
/// input's current value counts.
int runCalibrationEval(const CommandContext& context, const EvalOptions& options);

} // namespace tallowmere::tools

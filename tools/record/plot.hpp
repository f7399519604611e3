// plot: channels of a recording as a picture.
#pragma once

#include "tools/commands/command_context.hpp"

#include <string>
#include <vector>

namespace tallowmere::recording {

struct PlotOptions {
    std::string file;
    std::vector<std::string> channels; // numbers or names, one or more
    std::string output;                // an SVG file; empty: the output stream
    std::string from;                  // a place as parsePlace takes it; empty: the start
    std::string to;                    // likewise; empty: the end
    int boat = 0;                      // 0 to 99
};

/// Exit codes: 0, 1 (a file can't be read, no such channel, nothing to draw), 2 (no such place), 3 (the picture can't
/// be written).
int runPlot(const tools::CommandContext& context, const PlotOptions& options);

} // namespace tallowmere::recording

// play: a recording back into the section.
#pragma once

#include "tools/commands/command_context.hpp"

#include <string>
#include <vector>

namespace tallowmere::recording {

struct PlayOptions {
    std::vector<std::string> files; // one after the other
    double speed = 1.0;             // times as fast as recorded; 0: at once
    std::string from;               // a place as parsePlace takes it; empty: the start
    std::string to;                 // likewise; empty: the end
    bool loop = false;              // start again after the last file
    bool force = false;             // beside a host too
    bool progress = false;          // a line on the error stream, redrawn each second
};

/// Ends when a host comes, unless forced. Exit codes: 0, 1 (a file can't be read to its end; a host is there or has
/// come; another program is playing), 2 (no such place), 3 (no section).
int runPlay(const tools::CommandContext& context, const PlayOptions& options);

} // namespace tallowmere::recording

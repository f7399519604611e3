// record: what the section holds, into a file.
#pragma once

#include "tools/commands/command_context.hpp"

#include <string>
#include <vector>

namespace tallowmere::recording {

inline constexpr double kSlowestRate = 0.01; // looks a second
inline constexpr double kHighestRate = 100.0;
inline constexpr double kUsualRate = 50.0;

struct RecordOptions {
    std::vector<std::string> channels; // numbers or names; none: those whose log flag is set
    std::vector<int> boats;            // 0 to 99; none: all that are in use
    std::string file;                  // empty: a name made of the time, in the current folder
    bool csv = false;                  // also by the name's ending
    double rate = kUsualRate;          // how many times a second to look
    double seconds = 0.0;              // to go on for; 0: until the user ends it
    bool progress = false;             // a line on the error stream, redrawn each second
};

/// Exit codes: 0, 1 (no such channel), 3 (the file can't be made or written).
int runRecord(const tools::CommandContext& context, const RecordOptions& options);

} // namespace tallowmere::recording

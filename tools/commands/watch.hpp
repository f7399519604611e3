// watch: channels, live.
#pragma once

#include "core/channels/catalogue.hpp"
#include "tools/commands/command_context.hpp"

#include <string>
#include <vector>

namespace tallowmere::tools {

constexpr double kShortestInterval = 0.05;
constexpr double kLongestInterval = 3600.0;

struct WatchOptions {
    std::vector<std::string> channels; // numbers or names; none: the usual ones
    BoatIndex boat = 0;
    double intervalSeconds = 1.0; // kShortestInterval to kLongestInterval
    int count = 0;                // rounds; 0: until the user ends it
    bool all = false;             // every channel that holds a value, on a terminal on the whole screen
    bool json = false;            // lines of JSON, on a terminal too
};

/// On a terminal a table that is drawn anew in place each interval. Otherwise one line for each channel at
/// the first round and, at each later one, a line for each whose text or staleness has changed: time of
/// reading, channel, value, unit, age in seconds, "stale" or nothing, separated by tabs. While a recording is being
/// played the title says so, and the last field begins with "replay". Only looks: waits for shared data, and goes on
/// when they come and go. The exit code is 1 when there were none all the time.
int runWatch(const CommandContext& context, const WatchOptions& options);

} // namespace tallowmere::tools

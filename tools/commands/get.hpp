// get: the values of some channels, once.
#pragma once

#include "core/channels/catalogue.hpp"
#include "tools/commands/command_context.hpp"

#include <string>
#include <vector>

namespace tallowmere::tools {

struct GetOptions {
    std::vector<std::string> channels; // numbers or names
    BoatIndex boat = 0;
    bool json = false;
};

/// A line for each channel: name, value, unit, age. No value is an answer too: "-". As JSON one
/// object with all of them. Only looks: without shared data it says so, and the exit code is 1.
int runGet(const CommandContext& context, const GetOptions& options);

} // namespace tallowmere::tools

// The program's command line.
#pragma once

#include "tools/commands/command_context.hpp"

#include <string>
#include <vector>

namespace tallowmere::tools {

/// Runs the command that the arguments ask for and gives the program's exit code.
/// arguments   in UTF-8, program name first
int runProgram(const CommandContext& context, const std::vector<std::string>& arguments);

} // namespace tallowmere::tools

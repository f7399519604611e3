// The commands "record", "play" and "plot" of the command-line program.
#pragma once

#include "tools/commands/command_context.hpp"

namespace CLI {
class App;
}

namespace tallowmere::tools {

/// `context` and `exitCode` must live until the arguments have been parsed.
void addRecordingCommands(CLI::App& app, const CommandContext& context, int& exitCode);

} // namespace tallowmere::tools

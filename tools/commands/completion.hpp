// Completion of the command line by the shell.
#pragma once

#include "tools/commands/program_text.hpp"

#include <string>

namespace tallowmere::tools {

/// A script for bash 4.1 and later that completes commands, options, channel names (of the catalogue),
/// calibration items and file names. UTF-8. Needs no other package.
[[nodiscard]] std::string bashCompletion(const CommandText& program);

} // namespace tallowmere::tools

// check: what the library reads leniently, read strictly.
#pragma once

#include "tools/commands/command_context.hpp"

#include <string>

namespace tallowmere::tools {

/// Problems go to the output, a line each; a summary to the error stream. Nothing is made or changed.
/// target   a calibration item, a file, or empty for everything there is: settings, the files of the "config"
///          folder, the items' files
/// json     one object with the problems instead of lines
/// kDone without a problem, kNotFound (1) with one, kUsage for a target that is not there.
int runCheck(const CommandContext& context, const std::string& target, bool json = false);

} // namespace tallowmere::tools

// status: is anybody there?
#pragma once

#include "tools/commands/command_context.hpp"

namespace tallowmere::tools {

/// Tells about the section that is there. Makes none and writes nothing. 1 when there is none.
/// json   one object instead of lines
int runStatus(const CommandContext& context, bool json = false);

} // namespace tallowmere::tools

// status: is anybody there?
#pragma once

#include "tools/commands/command_context.hpp"

namespace tallowmere::tools {

/// Tells about the section that is there. Makes none and writes nothing. 1 when there is none.
int runStatus(const CommandContext& context);

} // namespace tallowmere::tools

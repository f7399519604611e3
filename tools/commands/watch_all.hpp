// watch --all on a terminal: the whole section on one screen.
#pragma once

#include "tools/commands/watch.hpp"

namespace tallowmere::tools {

/// Looks until the user ends it, or for `count` drawings. Takes no part: makes no section and waits for one.
int runWatchAll(const CommandContext& context, const WatchOptions& options);

} // namespace tallowmere::tools

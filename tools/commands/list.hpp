// list: what there is to read.
#pragma once

#include "tools/commands/command_context.hpp"

namespace tallowmere::tools {

enum class ListOf { Channels, Boats, Variables, Flags };

/// Makes no section. Channels are listed from the catalogue when there is none; everything else lives in
/// the section only.
int runList(const CommandContext& context, ListOf what);

} // namespace tallowmere::tools

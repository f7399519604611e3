// list: what there is to read.
#pragma once

#include "tools/commands/command_context.hpp"

namespace tallowmere::tools {

enum class ListOf { Channels, Boats, Variables, Flags };

/// Makes no section. Channels are listed from the catalogue when there is none; everything else lives in
/// the section only.
/// json   one array of objects (for variables an object with two) instead of tables
int runList(const CommandContext& context, ListOf what, bool json = false);

} // namespace tallowmere::tools

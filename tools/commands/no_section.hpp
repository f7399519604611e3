// What commands say that only look, when there is nothing to look at.
#pragma once

#include "tools/commands/command_context.hpp"

namespace tallowmere::tools {

/// more   the end of the sentence: "; waiting"
/// The exit code for it.
inline int tellNoSection(const CommandContext& context, const char* more = "") {
    context.err << "tallowmere: there is no shared data; it is there while a program that uses it runs, for example "
                   "\"tallowmere feed\""
                << more << '\n';
    return exit_code::kNotFound;
}

} // namespace tallowmere::tools

// Completion of the command line by the shell.
#pragma once

#include "tools/commands/program_text.hpp"

#include <string>

namespace tallowmere::tools {

/// A script for bash 4.1 and later that completes commands, options, channel names (of the catalogue),
/// calibration items and file names. UTF-8. Needs no other package.
[[nodiscard]] std::string bashCompletion(const CommandText& program);

/// The same for zsh 5 with its completion system (compinit), as a file _tallowmere in the function path or for
/// "source".
[[nodiscard]] std::string zshCompletion(const CommandText& program);

struct CompletionShell {
    const char* name;
    std::string (*script)(const CommandText& program);
};

/// The shells that there is a script for.
inline constexpr CompletionShell kCompletionShells[] = {{"bash", bashCompletion}, {"zsh", zshCompletion}};

} // namespace tallowmere::tools

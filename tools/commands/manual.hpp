// The manual page.
#pragma once

#include "tools/commands/program_text.hpp"

#include <string>
#include <string_view>

namespace tallowmere::tools {

/// The page tallowmere(1) in the man macros of troff, ASCII. version: of the program.
[[nodiscard]] std::string manualPage(const CommandText& program, std::string_view version);

} // namespace tallowmere::tools

// Options that several commands have.
#pragma once

#include <CLI/CLI.hpp>

namespace tallowmere::tools {

/// json   must live until the arguments have been parsed
inline void addJsonFlag(CLI::App& command, bool& json) {
    command.add_flag("--json", json, "Print JSON instead");
}

} // namespace tallowmere::tools

// What a command works with. The program passes the real things, tests pass others.
#pragma once

#include "platform/keyboard.hpp"
#include "platform/platform.hpp"
#include "platform/settings_complaints.hpp"
#include "tools/commands/exit_codes.hpp"

#include <atomic>
#include <functional>
#include <memory>
#include <ostream>
#include <vector>

namespace tallowmere::tools {

struct CommandContext {
    platform::Platform& platform;
    std::ostream& out;                                // data, and nothing else
    std::ostream& err;                                // what is wrong, and what to do
    const std::atomic<bool>& stop;                    // set when the user asks the program to end
    bool terminal = false;                            // `out` is a terminal that understands ANSI sequences
    std::function<int()> columns = [] { return 80; }; // of that terminal, now
    std::function<platform::ScreenSize()> screenSize = [] { return platform::ScreenSize(); }; // likewise
    std::function<std::unique_ptr<platform::Keyboard>()> keyboard = [] { return nullptr; };   // null: none
    // What in the text of the user's settings counts for nothing.
    std::function<std::vector<platform::SettingsComplaint>()> settingsComplaints = [] {
        return std::vector<platform::SettingsComplaint>();
    };
};

} // namespace tallowmere::tools

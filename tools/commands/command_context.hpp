// What a command works with. The program passes the real things, tests pass others.
#pragma once

#include "platform/platform.hpp"

#include <atomic>
#include <functional>
#include <ostream>

namespace tallowmere::tools {

/// Exit codes of the program.
namespace exit_code {
inline constexpr int kDone = 0;
inline constexpr int kNotFound = 1; // no such channel, no shared data, a write that was refused
inline constexpr int kUsage = 2;    // a command line that makes no sense
inline constexpr int kSystem = 3;   // the section can't be made, the output can't be written
} // namespace exit_code

struct CommandContext {
    platform::Platform& platform;
    std::ostream& out;                                // data, and nothing else
    std::ostream& err;                                // what is wrong, and what to do
    const std::atomic<bool>& stop;                    // set when the user asks the program to end
    bool terminal = false;                            // `out` is a terminal that understands ANSI sequences
    std::function<int()> columns = [] { return 80; }; // of that terminal, now
};

} // namespace tallowmere::tools

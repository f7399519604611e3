// How the program ends: the one table, for the commands, the help, the manual page and the documents.
#pragma once

namespace tallowmere::tools::exit_code {

inline constexpr int kDone = 0;
inline constexpr int kNotFound = 1;
inline constexpr int kUsage = 2;
inline constexpr int kSystem = 3;

struct Meaning {
    int code;
    const char* text;
};

inline constexpr Meaning kAll[] = {
    {kDone, "done"},
    {kNotFound, "not found (no such channel, item or file, no shared data), refused, cut short, or problems found"},
    {kUsage, "wrong usage: nothing was done"},
    {kSystem, "the shared data can't be made, or the output can't be written"},
};

} // namespace tallowmere::tools::exit_code

// What the program's commands are, in words: taken from the argument parser's own description, so that help,
// manual page and shell completion can't differ.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace tallowmere::tools {

struct OptionText {
    std::vector<std::string> names; // "-o", "--output"
    std::string value;              // what it takes: "FILE"; empty for a flag
    std::string description;
    std::string standard; // what counts without it; may be empty
};

struct OperandText {
    std::string name; // "CHANNEL"
    std::string description;
    bool required = false;
    bool several = false;
};

struct CommandText {
    std::string name; // empty for the program itself
    std::string description;
    std::string footer;
    std::vector<OptionText> options;
    std::vector<OperandText> operands;
    std::vector<CommandText> commands;
};

/// Without what the parser hides from its help.
[[nodiscard]] CommandText describe(const CLI::App& app);

} // namespace tallowmere::tools

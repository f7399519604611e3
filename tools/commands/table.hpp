// Aligned columns of text.
#pragma once

#include "tools/commands/command_context.hpp"

#include <string>
#include <utility>
#include <vector>

namespace tallowmere::tools {

class Table {
  public:
    enum class Align { Left, Right };

    explicit Table(std::vector<Align> columns) : columns_(std::move(columns)) {}
    /// A row of the table, its titles perhaps: one cell for each column, printable UTF-8.
    void add(std::vector<std::string> cells);
    /// Two spaces between columns, none at the end of a line.
    [[nodiscard]] std::vector<std::string> lines() const;
    /// All lines, each with its end.
    [[nodiscard]] std::string text() const;

  private:
    std::vector<Align> columns_;
    std::vector<std::vector<std::string>> rows_;
};

/// The whole table; on a terminal each line is shortened to its width, so that none wraps.
void writeTable(const CommandContext& context, const Table& table);

} // namespace tallowmere::tools

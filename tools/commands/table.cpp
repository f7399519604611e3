#include "tools/commands/table.hpp"

#include "tools/commands/text.hpp"

#include <algorithm>
#include <utility>

namespace tallowmere::tools {

void Table::add(std::vector<std::string> cells) {
    cells.resize(columns_.size());
    rows_.push_back(std::move(cells));
}

std::vector<std::string> Table::lines() const {
    std::vector<std::size_t> widths(columns_.size());
    for (const auto& row : rows_)
        for (std::size_t c = 0; c < row.size(); ++c) widths[c] = std::max(widths[c], width(row[c]));

    std::vector<std::string> lines;
    for (const auto& row : rows_) {
        std::string line;
        for (std::size_t c = 0; c < row.size(); ++c) {
            const std::string gap(widths[c] - width(row[c]), ' ');
            if (c != 0) line += "  ";
            line += columns_[c] == Align::Left ? row[c] + gap : gap + row[c];
        }
        line.erase(line.find_last_not_of(' ') + 1);
        lines.push_back(std::move(line));
    }
    return lines;
}

std::string Table::text() const {
    std::string text;
    for (const std::string& line : lines()) text += line + '\n';
    return text;
}

void writeTable(const CommandContext& context, const Table& table) {
    // The last column stays free: some terminals wrap as soon as it is written.
    const std::size_t columns = static_cast<std::size_t>(std::max(context.columns(), 2) - 1);
    for (const std::string& line : table.lines())
        context.out << (context.terminal ? shortenedTo(columns, line) : line) << '\n';
}

} // namespace tallowmere::tools

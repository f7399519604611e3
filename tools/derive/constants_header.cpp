#include "tools/commands/text.hpp"
#include "tools/derive/catalogue_rows.hpp"

#include <algorithm>
#include <iterator>

namespace tallowmere::derive {
namespace {

constexpr char kHead[] = R"(/*
 * Channel numbers by name. Printed from core/channels/catalogue.def by the target `derive`; do not edit.
 */
#ifndef TALLOWMERE_CHANNELS_H
#define TALLOWMERE_CHANNELS_H

enum ZanChannel {
)";
constexpr char kTail[] = R"(};

#endif
)";

/// The last one without a comma, which old compilers refuse.
std::string enumerator(const Row& row) {
    const bool last = &row == std::end(kRows) - 1;
    return "    ZAN_" + std::string(row.constant) + " = " + std::to_string(row.index) + (last ? "" : ",");
}

} // namespace

std::string constantsHeader() {
    std::size_t column = 0; // of the comments, which the formatter aligns
    for (const Row& row : kRows) column = std::max(column, enumerator(row).size() + 1);

    std::string text = kHead;
    for (const Row& row : kRows) {
        std::string line = enumerator(row);
        line.resize(column, ' ');
        text += line + "/* " + tools::printable(std::u16string_view(row.longName)) + " */\n";
    }
    return text + kTail;
}

} // namespace tallowmere::derive

#include "core/config/alternate_table.hpp"

#include "core/config/number_scanner.hpp"
#include "settings/data_folders.hpp"
#include "settings/text_lines.hpp"

#include <array>

namespace tallowmere {
namespace {

/// The fields of a line, in the places that scanf would fill. They live as long as the file is read.
struct Fields {
    std::uint32_t row = 0;
    std::array<std::int16_t, kAlternateColumns> channels{};
};

constexpr std::size_t kFewestFields = 9; // the row and eight channels

/// "%u,%hd,%hd,..." with a comma between the numbers, or "%u\t%hd\t%hd..." with any run of white space,
/// also none: there a sign alone begins the next number. The number of fields filled, 10 at most.
std::size_t scanFields(std::string_view line, bool commas, Fields& fields) noexcept {
    NumberScanner<char> scanner(line);
    const std::optional<ScannedNumber> row = scanner.number();
    if (!row) return 0;
    fields.row = row->asUnsigned32();
    std::size_t filled = 1;
    for (std::int16_t& channel : fields.channels) {
        if (commas && !scanner.skip(',')) break;
        const std::optional<ScannedNumber> number = scanner.number();
        if (!number) break;
        channel = number->asInt16();
        ++filled;
    }
    return filled;
}

void applyLine(SharedArea& area, std::string_view line, Fields& fields) noexcept {
    // Comments ("!" in front) and empty lines drop out by themselves: they begin with no number.
    std::size_t filled = scanFields(line, true, fields);
    if (filled < kFewestFields) filled = scanFields(line, false, fields);
    if (filled < kFewestFields || fields.row >= kAlternateRows) return;
    // KEPT: all nine columns are visited even when the line gave eight channels. The last one then takes
    // what the place still holds from the line, tried or skipped, that filled it last.
    for (std::size_t column = 0; column < kAlternateColumns; ++column) {
        const std::int16_t channel = fields.channels[column];
        if (channel >= 1 && channel < static_cast<std::int16_t>(kChannelCount))
            writeOnce(area.alternates.cells[fields.row][column], channel);
    }
}

} // namespace

void readAlternateTable(const Context& context) {
    if (context.area == nullptr) return;
    for (auto& row : context.area->alternates.cells)
        for (std::int32_t& cell : row) writeOnce(cell, kNone16);
    const auto file = context.platform.openFile(dataFile(context, u"config", u"alternate.csv"));
    if (file == nullptr) return;
    Fields fields;
    forEachLine(*file, [&](std::string_view line) { applyLine(*context.area, line, fields); });
}

} // namespace tallowmere

#include "tools/commands/list.hpp"

#include "core/channels/channel_lookup.hpp"
#include "core/channels/system_values.hpp"
#include "tools/commands/format.hpp"
#include "tools/commands/system_names.hpp"
#include "tools/commands/table.hpp"
#include "tools/commands/text.hpp"
#include "units/unit_names.hpp"
#include "view/section_reader.hpp"

#include <array>
#include <cstdio>

namespace tallowmere::tools {
namespace {

constexpr auto kLeft = Table::Align::Left;
constexpr auto kRight = Table::Align::Right;

std::string channelTable(const SharedArea* area) {
    Table table({kRight, kLeft, kLeft, kLeft, kLeft});
    table.add({"No.", "Short", "Long", "Unit", "Class"});
    for (std::size_t channel = 0; channel < kChannelCount; ++channel) {
        const UnitName unit = unitNameOf(unitClassOf(area, channel));
        table.add({std::to_string(channel), printable(shortNameOf(area, channel)), printable(longNameOf(area, channel)),
                   unit.baseUnit, unit.words});
    }
    return table.text();
}

/// The section keeps red in the low byte; written the usual way round.
std::string formatColour(std::uint32_t colour) {
    std::array<char, 8> text;
    std::snprintf(text.data(), text.size(), "#%02X%02X%02X", colour & 0xFFU, colour >> 8 & 0xFFU, colour >> 16 & 0xFFU);
    return text.data();
}

std::string boatTable(const SharedArea& area) {
    Table table({kRight, kLeft, kLeft, kLeft, kLeft});
    table.add({"Boat", "Name", "MMSI", "Colour", "Data"});
    for (std::size_t boat = 0; boat < kBoatCount; ++boat) {
        const BoatEntry& entry = area.boats[boat];
        const std::uint32_t mmsi = readOnce(entry.mmsi);
        table.add({std::to_string(boat), printable(readText(entry.name)), mmsi == 0 ? "-" : std::to_string(mmsi),
                   formatColour(readOnce(entry.colour)), readOnce(entry.hasData) != 0 ? "yes" : "-"});
    }
    return table.text();
}

std::string variableTables(const SharedArea& area) {
    Table variables({kRight, kRight, kLeft});
    variables.add({"Variable", "Value", "Meaning"});
    for (std::size_t index = 0; index < kSystemVariableCount; ++index) {
        const double value = systemVariable(&area, index);
        variables.add({std::to_string(index), value == NO_VALUE ? kNoValueText : formatNumber(value, kNoPrecision),
                       systemVariableName(index)});
    }
    Table integers({kRight, kRight, kLeft});
    integers.add({"Integer", "Value", "Meaning"});
    for (std::size_t index = 0; index < kSystemIntegerCount; ++index)
        integers.add({std::to_string(index), std::to_string(systemInteger(&area, index)), systemIntegerName(index)});
    return variables.text() + "\n" + integers.text();
}

std::string flagTable(const SharedArea& area) {
    Table table({kRight, kRight, kLeft});
    table.add({"Flag", "Value", "Meaning"});
    for (std::size_t index = 0; index < kSystemFlagCount; ++index)
        table.add({std::to_string(index), std::to_string(systemFlag(&area, index)), systemFlagName(index)});
    return table.text();
}

} // namespace

int runList(const CommandContext& context, ListOf what) {
    const SectionReader section(context.platform);
    if (what == ListOf::Channels) {
        context.out << channelTable(section.area());
        return exit_code::kDone;
    }
    if (section.area() == nullptr) {
        context.err << "tallowmere: there is no shared data; it is there while a program that uses it runs, "
                       "for example \"tallowmere feed\"\n";
        return exit_code::kNotFound;
    }
    context.out << (what == ListOf::Boats       ? boatTable(*section.area())
                    : what == ListOf::Variables ? variableTables(*section.area())
                                                : flagTable(*section.area()));
    return exit_code::kDone;
}

} // namespace tallowmere::tools

#include "tools/commands/list.hpp"

#include "core/channels/channel_lookup.hpp"
#include "core/channels/system_values.hpp"
#include "tools/commands/format.hpp"
#include "tools/commands/json_output.hpp"
#include "tools/commands/no_section.hpp"
#include "tools/commands/system_names.hpp"
#include "tools/commands/table.hpp"
#include "tools/commands/text.hpp"
#include "units/unit_names.hpp"
#include "view/section_reader.hpp"

#include <nlohmann/json.hpp>

#include <array>
#include <cstdio>

namespace tallowmere::tools {
namespace {

constexpr auto kLeft = Table::Align::Left;
constexpr auto kRight = Table::Align::Right;

Table channelTable(const SharedArea* area) {
    Table table({kRight, kLeft, kLeft, kLeft, kLeft});
    table.add({"No.", "Short", "Long", "Unit", "Class"});
    for (std::size_t channel = 0; channel < kChannelCount; ++channel) {
        const UnitName unit = unitNameOf(unitClassOf(area, channel));
        table.add({std::to_string(channel), printable(shortNameOf(area, channel)), printable(longNameOf(area, channel)),
                   unit.baseUnit, unit.words});
    }
    return table;
}

Json channelsJson(const SharedArea* area) {
    Json channels = Json::array();
    for (std::size_t channel = 0; channel < kChannelCount; ++channel) {
        const UnitClass unitClass = unitClassOf(area, channel);
        channels.push_back({{"channel", channel},
                            {"name", jsonText(printable(shortNameOf(area, channel)))},
                            {"long_name", jsonText(printable(longNameOf(area, channel)))},
                            {"unit", jsonUnit(unitClass)},
                            {"class", unitNameOf(unitClass).words},
                            {"timeout_seconds", kCatalogue[channel].timeoutSeconds}});
    }
    return channels;
}

/// The section keeps red in the low byte; written the usual way round.
std::string formatColour(std::uint32_t colour) {
    std::array<char, 8> text;
    std::snprintf(text.data(), text.size(), "#%02X%02X%02X", colour & 0xFFU, colour >> 8 & 0xFFU, colour >> 16 & 0xFFU);
    return text.data();
}

Table boatTable(const SharedArea& area) {
    Table table({kRight, kLeft, kLeft, kLeft, kLeft});
    table.add({"Boat", "Name", "MMSI", "Colour", "Data"});
    for (std::size_t boat = 0; boat < kBoatCount; ++boat) {
        const BoatEntry& entry = area.boats[boat];
        const std::uint32_t mmsi = readOnce(entry.mmsi);
        table.add({std::to_string(boat), printable(readText(entry.name)), mmsi == 0 ? "-" : std::to_string(mmsi),
                   formatColour(readOnce(entry.colour)), readOnce(entry.hasData) != 0 ? "yes" : "-"});
    }
    return table;
}

Json boatsJson(const SharedArea& area) {
    Json boats = Json::array();
    for (std::size_t boat = 0; boat < kBoatCount; ++boat) {
        const BoatEntry& entry = area.boats[boat];
        const std::uint32_t mmsi = readOnce(entry.mmsi);
        boats.push_back({{"boat", boat},
                         {"name", jsonText(printable(readText(entry.name)))},
                         {"mmsi", mmsi == 0 ? Json() : Json(mmsi)},
                         {"colour", formatColour(readOnce(entry.colour))},
                         {"has_data", readOnce(entry.hasData) != 0}});
    }
    return boats;
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

Json systemRow(std::size_t index, const Json& value, const char* meaning) {
    return {{"index", index}, {"value", value}, {"meaning", jsonText(meaning)}};
}

Json variablesJson(const SharedArea& area) {
    Json variables = Json::array();
    for (std::size_t index = 0; index < kSystemVariableCount; ++index) {
        const double value = systemVariable(&area, index);
        variables.push_back(systemRow(index, jsonNumber(value), systemVariableName(index)));
        variables.back()["note"] = jsonNote(value);
    }
    Json integers = Json::array();
    for (std::size_t index = 0; index < kSystemIntegerCount; ++index)
        integers.push_back(systemRow(index, systemInteger(&area, index), systemIntegerName(index)));
    return {{"variables", std::move(variables)}, {"integers", std::move(integers)}};
}

Table flagTable(const SharedArea& area) {
    Table table({kRight, kRight, kLeft});
    table.add({"Flag", "Value", "Meaning"});
    for (std::size_t index = 0; index < kSystemFlagCount; ++index)
        table.add({std::to_string(index), std::to_string(systemFlag(&area, index)), systemFlagName(index)});
    return table;
}

Json flagsJson(const SharedArea& area) {
    Json flags = Json::array();
    for (std::size_t index = 0; index < kSystemFlagCount; ++index)
        flags.push_back(systemRow(index, systemFlag(&area, index), systemFlagName(index)));
    return flags;
}

void writeList(const CommandContext& context, const SharedArea& area, ListOf what) {
    if (what == ListOf::Boats) return writeTable(context, boatTable(area));
    if (what == ListOf::Flags) return writeTable(context, flagTable(area));
    context.out << variableTables(area);
}

Json jsonOf(const SharedArea& area, ListOf what) {
    return what == ListOf::Boats ? boatsJson(area) : what == ListOf::Flags ? flagsJson(area) : variablesJson(area);
}

} // namespace

int runList(const CommandContext& context, ListOf what, bool json) {
    const SectionReader section(context.platform);
    const SharedArea* const area = section.area();
    if (what != ListOf::Channels && area == nullptr) return tellNoSection(context);
    if (json)
        writeJson(context.out, what == ListOf::Channels ? channelsJson(area) : jsonOf(*area, what));
    else if (what == ListOf::Channels)
        writeTable(context, channelTable(area));
    else
        writeList(context, *area, what);
    return exit_code::kDone;
}

} // namespace tallowmere::tools

#include "tools/commands/json_output.hpp"

#include "tools/commands/format.hpp"
#include "units/unit_names.hpp"

#include <nlohmann/json.hpp>

#include <cmath>

namespace tallowmere::tools {
namespace {

// Every text was made printable before; should one not be, the output is still JSON.
constexpr auto kReplaceBadText = Json::error_handler_t::replace;

} // namespace

Json jsonNumber(double value) {
    return value == NO_VALUE || !std::isfinite(value) ? Json() : Json(value);
}

Json jsonNote(double value) {
    return std::isfinite(value) ? Json() : Json(formatNumber(value, 0));
}

Json jsonText(const std::string& text) {
    return text.empty() ? Json() : Json(text);
}

Json jsonUnit(UnitClass unitClass) {
    if (unitClass == UnitClass::DateTime || unitClass == UnitClass::TimeSpan) return "days";
    return jsonText(unitNameOf(unitClass).baseUnit);
}

Json jsonMoment(std::optional<std::int64_t> ticks) {
    return ticks ? Json(formatMomentTicks(*ticks)) : Json();
}

Json jsonOf(const Reading& reading, BoatIndex boat) {
    const bool there = reading.freshness != Freshness::None;
    const bool sensible = there && reading.stamp && *reading.stamp > 0 && *reading.stamp != kNoTime;
    Json note = jsonNote(reading.number);
    if (there && reading.number == NO_VALUE) note = "unreadable";
    return {
        {"channel", reading.channel},
        {"name", reading.channelName},
        {"boat", boat},
        {"value", jsonNumber(reading.number)},
        {"note", std::move(note)},
        {"unit", jsonUnit(reading.unitClass)},
        {"moment", jsonMoment(reading.moment)},
        {"state", stateName(reading.freshness)},
        {"age_seconds", reading.age ? Json(*reading.age) : Json()},
        {"written_at", jsonMoment(sensible ? reading.stamp : std::nullopt)},
        {"source", reading.source == kNone16 ? Json() : Json(reading.source)},
        {"source_name", jsonText(reading.sourceName)},
    };
}

void writeJson(std::ostream& out, const Json& json) {
    constexpr int kIndent = 2;
    out << json.dump(kIndent, ' ', false, kReplaceBadText) << '\n';
}

void writeJsonLine(std::ostream& out, const Json& json) {
    out << json.dump(-1, ' ', false, kReplaceBadText) << '\n';
}

} // namespace tallowmere::tools

// Output for other programs. docs/commands.md names every field.
#pragma once

#include "tools/commands/reading.hpp"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

namespace tallowmere::tools {

using Json = nlohmann::ordered_json; // fields keep their order

/// JSON has neither 32767.0 for "none" nor NaN nor infinities: all are null.
[[nodiscard]] Json jsonNumber(double value);
/// What null hides: "nan", "inf", "-inf"; null for a number or none.
[[nodiscard]] Json jsonNote(double value);
/// Null for an empty text. Printable UTF-8.
[[nodiscard]] Json jsonText(const std::string& text);
/// Of a value as a number: "days" for moments and time spans; null where there is none.
[[nodiscard]] Json jsonUnit(UnitClass unitClass);
/// UTC with all seven decimals of its second; null for none.
[[nodiscard]] Json jsonMoment(std::optional<std::int64_t> ticks);
/// What a channel of a boat shows.
[[nodiscard]] Json jsonOf(const Reading& reading, BoatIndex boat);

/// Over several lines, for a command's whole answer.
void writeJson(std::ostream& out, const Json& json);
/// On one line, with its end.
void writeJsonLine(std::ostream& out, const Json& json);

} // namespace tallowmere::tools

#include "tools/calibration/item_finder.hpp"

#include "calibration/item_table.hpp"
#include "tools/commands/text.hpp"

#include <algorithm>
#include <charconv>

namespace tallowmere::tools {
namespace {

std::string plain(std::string_view name) {
    std::string text = lowerCased(name);
    std::erase_if(text, [](char c) { return c == ' ' || c == '_' || c == '-'; });
    return text;
}

std::optional<std::size_t> numberOf(std::string_view text) {
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (end != text.data() + text.size() || error == std::errc::invalid_argument) return std::nullopt;
    return error == std::errc{} ? number : kCalibrationItemCount;
}

std::string near(const std::string& typed) {
    std::string names;
    for (const CalibrationItemDef& row : kCalibrationItems) {
        const std::string name = printable(row.name);
        if (typed.empty() || plain(name).find(typed) == std::string::npos) continue;
        names += (names.empty() ? "" : ", ") + name;
    }
    return names.empty() ? "\"tallowmere calibration list\" shows all" : "near it: " + names;
}

} // namespace

FoundItem findItem(std::string_view typed) {
    if (const auto number = numberOf(typed)) {
        if (*number < kCalibrationItemCount) return {number, {}};
        return {std::nullopt, "there is no calibration item " + printable(typed) + "; they go from 0 to 19"};
    }
    const std::string name = plain(typed);
    for (std::size_t id = 0; id < kCalibrationItemCount; ++id)
        if (plain(printable(kCalibrationItems[id].name)) == name) return {id, {}};
    return {std::nullopt, "there is no calibration item \"" + printable(typed) + "\"; " + near(name)};
}

} // namespace tallowmere::tools

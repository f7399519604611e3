#include "tools/calibration/item_text.hpp"

#include "core/channels/channel_lookup.hpp"
#include "tools/commands/format.hpp"
#include "tools/commands/text.hpp"
#include "units/unit_names.hpp"

namespace tallowmere::tools {

bool isInput(std::int32_t channel) noexcept {
    return channel >= 0 && channel < static_cast<std::int32_t>(kChannelCount);
}

std::string numberText(double value) {
    return value == NO_VALUE ? kNoValueText : formatNumber(value, kNoPrecision);
}

std::string quantityText(double value, const std::string& unit) {
    const bool attached = unit.starts_with("\u00B0") || unit == "%";
    return numberText(value) + (unit.empty() || attached ? "" : " ") + unit;
}

std::string inputName(std::int32_t channel) {
    return isInput(channel) ? printable(shortNameOf(nullptr, static_cast<std::size_t>(channel))) : "-";
}

std::string inputUnit(std::int32_t channel) {
    return isInput(channel) ? unitNameOf(unitClassOf(nullptr, static_cast<std::size_t>(channel))).baseUnit : "";
}

} // namespace tallowmere::tools

// What the calibration commands call items, inputs and numbers.
#pragma once

#include "calibration/calibration.hpp"

#include <string>

namespace tallowmere::tools {

/// Ten significant digits at most; "-" for NO_VALUE.
[[nodiscard]] std::string numberText(double value);
/// With its unit: "12.5 kt", "30\u00B0".
[[nodiscard]] std::string quantityText(double value, const std::string& unit);
/// Short name of an input or calibrated channel from the catalogue; "-" for none.
[[nodiscard]] std::string inputName(std::int32_t channel);
/// Its base unit; empty for none.
[[nodiscard]] std::string inputUnit(std::int32_t channel);
[[nodiscard]] bool isInput(std::int32_t channel) noexcept;

} // namespace tallowmere::tools

// Decimal numbers in configuration text, whatever the locale.
#pragma once

#include <optional>
#include <string_view>

namespace tallowmere {

/// The longest decimal number at the front of a text, after white space: sign, digits with or without a point,
/// exponent; what follows is ignored ("12kt" is 12, "1e" is 1). Numbers too small for a double are 0.
/// Empty for anything else: words ("inf" and "nan" too), hexadecimal, numbers too large for a double.
[[nodiscard]] std::optional<double> leadingDecimal(std::string_view text) noexcept;

} // namespace tallowmere

// Rounding that gives the same result on every run-time library.
#pragma once

#include <cmath>

namespace tallowmere {

/// To the nearest whole number, half away from zero, exactly; NaN and infinities stay. Not std::round: the
/// Windows run-time library adds 0.5 and cuts, which makes 1 of the largest double below 0.5.
[[nodiscard]] inline double roundHalfAway(double value) noexcept {
    // From there on all are whole; and an infinity less itself would be an invalid operation.
    if (!std::isless(std::fabs(value), 0x1p52)) return value;
    const double whole = std::trunc(value);
    return std::fabs(value - whole) >= 0.5 ? whole + std::copysign(1.0, value) : whole;
}

} // namespace tallowmere

// One step of a turn: values lie in their range or a turn beside it. A quiet NaN raises no exception
// (core/channels/held_exceptions.hpp).
#pragma once

#include <cmath>

namespace tallowmere {

/// Towards 0 <= degrees < 360. One step only, so 725 degrees become 365; NaN stays.
[[nodiscard]] inline double stepToBearing(double degrees) noexcept {
    if (std::isgreaterequal(degrees, 360.0)) return degrees - 360.0;
    return std::isless(degrees, 0.0) ? degrees + 360.0 : degrees;
}

/// Towards -180 <= degrees <= 180, likewise.
[[nodiscard]] inline double stepToSigned(double degrees) noexcept {
    if (std::isgreater(degrees, 180.0)) return degrees - 360.0;
    return std::isless(degrees, -180.0) ? degrees + 360.0 : degrees;
}

} // namespace tallowmere

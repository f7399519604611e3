// One step of a turn: values lie in their range or a turn beside it.
#pragma once

namespace tallowmere {

/// Towards 0 <= degrees < 360. One step only, so 725 degrees become 365; NaN stays.
[[nodiscard]] constexpr double stepToBearing(double degrees) noexcept {
    if (degrees >= 360.0) return degrees - 360.0;
    return degrees < 0.0 ? degrees + 360.0 : degrees;
}

/// Towards -180 <= degrees <= 180, likewise.
[[nodiscard]] constexpr double stepToSigned(double degrees) noexcept {
    if (degrees > 180.0) return degrees - 360.0;
    return degrees < -180.0 ? degrees + 360.0 : degrees;
}

} // namespace tallowmere

// The part of a boat's polar that calibration asks for. A host that has a polar brings it; the library has none.
#pragma once

#include <optional>

namespace tallowmere {

class Polar {
  public:
    /// The two target true-wind angles, 0 to 180 degrees off the bow, for a true wind speed in knots; empty
    /// when the polar can't tell. Results outside the range are brought to its nearer end.
    [[nodiscard]] virtual std::optional<double> firstTargetAngle(double windSpeed) const noexcept = 0;
    [[nodiscard]] virtual std::optional<double> secondTargetAngle(double windSpeed) const noexcept = 0;

  protected:
    ~Polar() = default;
};

} // namespace tallowmere

// The two time scales: 100 ns since 1601-01-01 UTC in the section, days as doubles at the interface.
#pragma once

#include "platform/clock_scale.hpp"

namespace tallowmere {

inline constexpr double kTicksPerDay = 8.64e11;
inline constexpr double kDaysFrom1601To1899 = 109205.0; // to 1899-12-30, day 0 of moments kept as doubles
using platform::kTicksPerSecond;

} // namespace tallowmere

// The scale of the seam's clock, which is that of every time stamp too: 100 ns units since 1601-01-01 UTC.
#pragma once

#include <cstdint>

namespace tallowmere::platform {

inline constexpr std::int64_t kTicksPerSecond = 10'000'000;
inline constexpr std::int64_t kSecondsFrom1601To1970 = 11'644'473'600; // to the epoch of other clocks

} // namespace tallowmere::platform

// One client written twice, on the C functions and on the C++ header.
#pragma once

namespace tallowmere::bench {

/// Reads boat speed and wind angle `calls` times; the sum of what is there.
double readInC(int calls) noexcept;
double readInCpp(int calls) noexcept;

/// Writes boat speed `calls` times; how many writes were not refused.
int writeInC(int calls) noexcept;
int writeInCpp(int calls) noexcept;

} // namespace tallowmere::bench

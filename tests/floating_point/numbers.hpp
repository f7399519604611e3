// Doubles that lead careless arithmetic astray. No signalling NaN: to use one raises an exception by definition.
#pragma once

#include <array>
#include <limits>

namespace tallowmere::test {

using Limits = std::numeric_limits<double>;
inline constexpr std::array kOddNumbers{Limits::quiet_NaN(),
                                        -Limits::quiet_NaN(),
                                        Limits::infinity(),
                                        -Limits::infinity(),
                                        Limits::max(),
                                        Limits::lowest(),
                                        Limits::denorm_min(),
                                        -Limits::denorm_min(),
                                        0.0,
                                        -0.0,
                                        32767.0,
                                        1e19,
                                        -400.0,
                                        45.0,
                                        90.0,
                                        135.0};

} // namespace tallowmere::test

// What a section holds at the start of a run.
#pragma once

#include "fuzz/support/target.hpp"

#include <cstddef>

namespace tallowmere::fuzz {

enum class Fill : unsigned { Defaults, Zeros, Ones, Sevens, Bits, Noise, OtherNoise, Input, Count };

/// Fills all 253,336 bytes; zeros for Defaults and Input.
void fillSection(std::byte* section, Fill fill) noexcept;

} // namespace tallowmere::fuzz

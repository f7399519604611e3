// The contents of a section that was just made.
#pragma once

#include "core/channels/shared_area.hpp"

namespace tallowmere {

/// Fills a section of zeros with its defaults. Bytes that no default is given for are left alone, and so
/// is the block of boat 1 (KEPT: its records stay kind 0 with value 0 until something is written).
void initialiseArea(SharedArea& area) noexcept;

} // namespace tallowmere

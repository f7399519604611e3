// Values that no boat can have are not written: a damaged number must not replace a good one.
#pragma once

#include "core/channels/catalogue.hpp"

namespace tallowmere::feed {

/// The catalogue's bounds where it has any, else wide bounds by the unit class. False for a NaN.
[[nodiscard]] bool isPlausible(ChannelIndex channel, double value) noexcept;

} // namespace tallowmere::feed

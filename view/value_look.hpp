// Values with their age, one or many of one moment.
#pragma once

#include "core/channels/shared_area.hpp"

#include <tallowmere/view.h>

#include <cstdint>
#include <span>

namespace tallowmere {

/// One value as tlm_view_read gives it.
/// area   null: none
/// now    100 ns since 1601-01-01 UTC
[[nodiscard]] tlm_view_value lookAtValue(const SharedArea* area, ChannelIndex channel, BoatIndex boat,
                                         std::int64_t now) noexcept;

/// Channels of one boat as tlm_view_read_group gives them. `values` has as many elements as `channels`. All of
/// the result but the generation, which the caller knows.
tlm_view_group lookAtGroup(const SharedArea* area, std::span<const ChannelIndex> channels, BoatIndex boat,
                           std::int64_t now, std::span<tlm_view_value> values) noexcept;

} // namespace tallowmere

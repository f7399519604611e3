// From base units to the units that the user has chosen for display.
#pragma once

#include "core/channels/value_store.hpp"

namespace tallowmere {

/// A value of a channel in display units, by the channel's unit class and the unit settings of the section.
/// value       in the channel's base unit
/// variation   degrees, added as it stands to a bearing while true bearings are switched off;
///             32767.0: the own boat's current variation is taken. KEPT: added, whatever its sign. One that is
///             positive to the east, as `feed` writes MagVar, makes a magnetic bearing true; to show true bearings
///             as magnetic pass its negative.
/// NO_VALUE for a bearing whose variation isn't known and for a depth with an unknown unit setting; otherwise
/// a setting without a unit leaves the value as it is. Unchanged without a section, for NO_VALUE and for
/// channels 414 and above. Any thread; does not allocate.
[[nodiscard]] double ConvertForDisplay(const ValueStore& values, ChannelIndex channel, double value,
                                       double variation = NO_VALUE) noexcept;

} // namespace tallowmere

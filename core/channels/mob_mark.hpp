// The man-overboard mark.
#pragma once

#include "core/channels/context.hpp"

namespace tallowmere {

/// The notice that a host application's window gets.
inline constexpr platform::HostMessage kMobMessage{0x8019, 8, 0};

/// Stores the mark "MOB" at a position (degrees, stored as given) with both flags set and posts
/// kMobMessage to the host window. The result of the post; 0, with nothing stored, when there is no
/// section or no host window in it.
int raiseManOverboard(const Context& context, double latitude, double longitude) noexcept;

} // namespace tallowmere

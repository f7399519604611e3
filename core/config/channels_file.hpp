// The channel overrides of the data folder: logging, damping, precision and, for user channels, unit
// class and names.
#pragma once

#include "core/channels/context.hpp"

namespace tallowmere {

/// Resets log flag, damping and precision of channels 1 to 413 to the catalogue's and applies
/// "config/channels.xml". A missing or foreign file leaves the reset values; a malformed one what was
/// read before the damage. Does nothing without a section. Run by the section's creator only.
void readChannels(const Context& context);

} // namespace tallowmere

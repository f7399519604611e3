// The boat list of the data folder: names, MMSI numbers and display colours for the section.
#pragma once

#include "core/channels/context.hpp"
#include "settings/track_settings.hpp"

namespace tallowmere {

/// Resets the section's boats ("Boat 7", no MMSI, light green; boat 0 without a name) and applies
/// "config/boats.xml" to them. A missing or foreign file leaves the reset values; a malformed one what
/// was read before the damage. Does nothing without a section.
/// tracks   may be null; otherwise a boat whose MMSI changes loses its recorded track
/// Run by the section's creator only.
void readBoats(const Context& context, TrackSettings* tracks);

} // namespace tallowmere

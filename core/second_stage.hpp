// The steps of the second start-up stage, which a host's core object runs at the end of its construction.
#pragma once

#include "calibration/calibration.hpp"
#include "core/channels/context.hpp"

namespace tallowmere {

/// Blocks the channels that the host computes itself, as the system flags say, so that clients can't overwrite
/// them. Only ever blocks: a channel stays blocked while the section lives. Nothing without a section.
void blockChannelsByFlags(const Context& context) noexcept;

/// Brings all calibration items to life: reset, the user's settings, then each item's file. An item that runs
/// out of memory is left with an empty or a default table, and the next one goes on.
void startCalibration(Calibration& calibration) noexcept;

/// Writes the folder of the host's executable, with its trailing separator, into the core settings as
/// "Location"; an empty text when the folder can't be told. A failure is ignored.
void writeHostLocation(platform::Platform& platform);

} // namespace tallowmere

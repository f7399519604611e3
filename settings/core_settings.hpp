// The core settings: what the section's creator reads from the user's settings into the section.
#pragma once

#include "core/channels/context.hpp"

namespace tallowmere {

/// Reads the paths, system variables, flags and integers of the core key into the section. What is
/// missing or of another type leaves the section's value; a missing key leaves them all, and is not made.
/// The default data folder is made on the way. Out of memory, what was being read keeps the section's value and
/// the rest is read. Does nothing without a section. Run by the section's creator only.
void readCoreSettings(const Context& context) noexcept;

} // namespace tallowmere

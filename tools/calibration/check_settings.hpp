// Strict readers of the user's settings.
#pragma once

#include "tools/calibration/findings.hpp"

#include "platform/platform.hpp"

#include <cstddef>
#include <optional>

namespace tallowmere::tools {

/// The values of the core key.
void checkCoreSettings(const platform::Platform& platform, Findings& findings);

/// The values of the calibration key: all items', or one's (0 to 19).
void checkCalibrationSettings(const platform::Platform& platform, std::optional<std::size_t> item, Findings& findings);

} // namespace tallowmere::tools

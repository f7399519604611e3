// A strict reader of calibration files, beside the lenient one of the library.
#pragma once

#include "tools/calibration/findings.hpp"

#include "platform/platform.hpp"

#include <cstddef>
#include <optional>
#include <string>

namespace tallowmere::tools {

/// item   the item that reads the file, for what depends on it; empty for a file by itself
void checkCalibrationFile(const platform::Platform& platform, const std::u16string& path,
                          std::optional<std::size_t> item, Findings& findings);

} // namespace tallowmere::tools

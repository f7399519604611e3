// Strict readers of the files of the "config" folder, beside the lenient ones of the library. A file that is not
// there is no problem.
#pragma once

#include "tools/calibration/findings.hpp"

#include "platform/platform.hpp"

#include <string>

namespace tallowmere::tools {

void checkBoatsFile(const platform::Platform& platform, const std::u16string& path, Findings& findings);
void checkChannelsFile(const platform::Platform& platform, const std::u16string& path, Findings& findings);
void checkAlternateFile(const platform::Platform& platform, const std::u16string& path, Findings& findings);

} // namespace tallowmere::tools

// A registry text read strictly.
#pragma once

#include "platform/posix/registry_text.hpp"
#include "platform/settings_complaints.hpp"

namespace tallowmere::platform::posix {

/// The lines of a registry text (UTF-8) that the reader passes over, and those that settings can't come from.
/// `file` is the name that they are reported under. Comments, empty lines, other programs' keys and the
/// format's first line are proper.
[[nodiscard]] std::vector<SettingsComplaint> registryComplaints(std::string_view text, const std::u16string& file);

} // namespace tallowmere::platform::posix

// What in the text that holds the user's settings counts for nothing. Not part of the shared library.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tallowmere::platform {

/// Something in the place that holds the user's settings which is not taken as it was meant.
struct SettingsComplaint {
    std::u16string file;
    std::size_t line; // from 1; 0 for the file as a whole
    std::string what;
    std::string effect; // what the library makes of it
};

/// Reads the user's settings strictly. Empty where they are no text.
[[nodiscard]] std::vector<SettingsComplaint> settingsComplaints();

} // namespace tallowmere::platform

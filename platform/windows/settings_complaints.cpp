#include "platform/settings_complaints.hpp"

namespace tallowmere::platform {

std::vector<SettingsComplaint> settingsComplaints() {
    return {};
}

} // namespace tallowmere::platform

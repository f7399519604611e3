#include "platform/settings_complaints.hpp"

#include "platform/posix/registry_complaints.hpp"
#include "platform/posix/settings_file.hpp"
#include "platform/posix/text.hpp"

namespace tallowmere::platform {

std::vector<SettingsComplaint> settingsComplaints() {
    using posix::SettingsFile;
    const std::u16string path = posix::widenText(SettingsFile::path());
    const SettingsFile file(false);
    std::optional<std::string> bytes = file.read();
    if (bytes) return posix::registryComplaints(posix::decodeRegistryFile(std::move(*bytes)), path);
    if (!SettingsFile::isThere()) return {};
    return {{path, 0,
             "can't be taken: it and its folder must be the user's own, closed to the writing of group and "
             "others (chmod go-w), no symbolic links, and the file a regular one of at most 16 MiB",
             "all settings have their defaults"}};
}

} // namespace tallowmere::platform

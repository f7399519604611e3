// Keys of the user's settings, kept in the settings file.
#pragma once

#include "platform/platform.hpp"

#include <memory>

namespace tallowmere::platform::posix {

/// A key shows what the file held when it was opened, and what it has written itself since.
[[nodiscard]] std::unique_ptr<SettingsKey> openSettingsKey(const std::u16string& path);
[[nodiscard]] std::unique_ptr<SettingsKey> createSettingsKey(const std::u16string& path);

} // namespace tallowmere::platform::posix

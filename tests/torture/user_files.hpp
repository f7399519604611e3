// A user's settings and files of a usual size, for sections that are not made of defaults alone. None of them changes
// what is stored or read of a value.
#pragma once

#include "core/channels/catalogue.hpp"

#include <cstdint>
#include <filesystem>
#include <string>
#include <variant>
#include <vector>

namespace tallowmere::torture {

/// One value of the core settings.
struct UserSetting {
    std::string name;
    std::variant<double, std::uint32_t> value;
};

/// Every number that the core settings may hold, 63 of them.
[[nodiscard]] std::vector<UserSetting> userSettings();

/// What the last cell of alternate.csv names: the last that is read of all files.
inline constexpr ChannelIndex kLastAlternate = ZAN_HDG;

/// Writes boats.xml, channels.xml and alternate.csv below a data folder.
void writeUserFiles(const std::filesystem::path& dataFolder);

} // namespace tallowmere::torture

// What a channel is, as the catalogue and the shared section together say.
#pragma once

#include "core/channels/section_access.hpp"

#include <string>

namespace tallowmere {

/// The class held in the channel's settings record; the catalogue's without a section; `Plain` for 414
/// and above.
[[nodiscard]] inline UnitClass settingsUnitClassOf(const SharedArea* area, std::size_t channel) noexcept {
    if (channel >= kChannelCount) return UnitClass::Plain;
    if (area == nullptr) return kCatalogue[channel].unitClass();
    return static_cast<UnitClass>(readOnce(area->settings[channel].unitClass));
}

/// The unit class of a channel: for user channels 172 to 202 the one in the settings record, for every
/// other the catalogue's; `Plain` for 414 and above.
/// KEPT: channel 203 is a user channel too and still takes the catalogue's class.
[[nodiscard]] inline UnitClass unitClassOf(const SharedArea* area, std::size_t channel) noexcept {
    const ChannelDef* row = catalogueRow(channel);
    if (row == nullptr) return UnitClass::Plain;
    if (channel >= kFirstUserChannel && channel < kLastUserChannel) return settingsUnitClassOf(area, channel);
    return row->unitClass();
}

/// The storage kind of a channel: by the class in its settings record, for every channel. Double for 414
/// and above.
[[nodiscard]] inline StorageKind storageKindOf(const SharedArea* area, std::size_t channel) noexcept {
    return storageKindOf(settingsUnitClassOf(area, channel));
}

/// The visible short name: the one in the settings record when that is not empty, else the catalogue's.
/// Empty for 414 and above.
[[nodiscard]] inline std::u16string shortNameOf(const SharedArea* area, std::size_t channel) {
    const ChannelDef* row = catalogueRow(channel);
    if (row == nullptr) return {};
    std::u16string name = area != nullptr ? readText(area->settings[channel].shortName) : std::u16string();
    return name.empty() ? std::u16string(row->shortName) : name;
}

/// The visible long name, chosen likewise.
[[nodiscard]] inline std::u16string longNameOf(const SharedArea* area, std::size_t channel) {
    const ChannelDef* row = catalogueRow(channel);
    if (row == nullptr) return {};
    std::u16string name = area != nullptr ? readText(area->settings[channel].longName) : std::u16string();
    return name.empty() ? std::u16string(row->longName) : name;
}

} // namespace tallowmere

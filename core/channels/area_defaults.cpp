#include "core/channels/area_defaults.hpp"

#include "core/channels/section_access.hpp"

#include <algorithm>
#include <iterator>

namespace tallowmere {
namespace {

constexpr double kVariableDefaults[] = {15.85, 15.8, 4.4, 0, 3.0, 1.0, 1.0, 10.0, 5.0, 5.0, 5.0, 3.0};
constexpr std::size_t kFlagsSetByDefault[] = {0, 1, 3, 7, 21, 40, 41, 42};
constexpr ChannelIndex kLastChannel = kChannelCount - 1;

void initialiseHeader(SharedArea& area) noexcept {
    area.hostWindow = 0;
    area.marksPath[0] = area.databasePath[0] = area.dataFolder[0] = u'\0';
    area.text544[0] = u'\0';
    for (auto& text : area.texts1648) text[0] = u'\0';
    area.text253244[0] = '\0';
    area.number253178 = 32767;
    area.trackReset = 0;
    for (EventRecord& event : area.events) {
        event.time = kNoTime;
        event.flag = 0;
        std::fill(std::begin(event.values), std::end(event.values), NO_VALUE);
    }
    std::fill(std::begin(area.times), std::end(area.times), kNoTime);
    for (auto& row : area.alternates.cells) std::fill(std::begin(row), std::end(row), ZAN_NO_CHANNEL);
    area.boatCount = 0;
}

void initialiseSystemValues(SharedArea& area) noexcept {
    std::fill(std::begin(area.systemVariables), std::end(area.systemVariables), NO_VALUE);
    std::copy(std::begin(kVariableDefaults), std::end(kVariableDefaults), area.systemVariables);
    std::fill(std::begin(area.systemIntegers), std::end(area.systemIntegers), 0);
    area.systemIntegers[6] = 5; // KEPT: a value that its own setter never produces
    area.systemIntegers[10] = 60;
    std::fill(std::begin(area.systemFlags), std::end(area.systemFlags), std::uint8_t{0});
    for (const std::size_t flag : kFlagsSetByDefault) area.systemFlags[flag] = 1;
}

void initialiseMob(MobMark& mob) noexcept {
    mob.name[0] = '\0';
    mob.name[std::size(mob.name) - 1] = '\0';
    mob.latitude = mob.longitude = NO_VALUE;
    mob.flagA = mob.flagB = 0;
}

void initialiseBoats(SharedArea& area) noexcept {
    for (BoatEntry& boat : area.boats) {
        boat.number = kNoBoatNumber;
        boat.hasData = 0;
        boat.name[0] = u'\0';
        boat.mmsi = 0;
        boat.colour = kDefaultBoatColour;
    }
}

void initialiseSettings(SharedArea& area) noexcept {
    for (std::size_t channel = 0; channel < kChannelCount; ++channel) {
        ChannelSetting& setting = area.settings[channel];
        setting.calibrate = setting.blocked = setting.written = setting.log = setting.writeLockable = 0;
        setting.precision = kCatalogue[channel].precision;
        setting.unitClass = static_cast<std::int16_t>(kCatalogue[channel].unitClass());
        setting.damping = 0;
        setting.longName[0] = setting.shortName[0] = u'\0';
    }
    // KEPT: the loop's last channel alone; channels.xml's reset sets the others from the catalogue.
    area.settings[kLastChannel].log = 1;
}

void initialiseValues(SharedArea& area) noexcept {
    FullBoatBlock& own = area.fullBlocks[0]; // KEPT: boat 1's block stays as the system supplied it
    for (std::size_t channel = 0; channel < kChannelCount; ++channel) {
        const Record none = Record::none(storageKindOf(kCatalogue[channel].unitClass()));
        own.stamps[channel] = kNoTime;
        storeRecord(own.current[channel], none);
        storeRecord(own.second[channel], none);
        storeRecord(own.third[channel], none);
        own.marks[channel] = 0;
        own.records[channel][0] = 0;

        const std::uint16_t slot = kCatalogue[channel].compactIndex;
        if (slot == kNone16) continue;
        for (CompactBoatBlock& boat : area.compactBlocks) {
            boat.stamps[slot] = kNoTime;
            storeRecord(boat.current[slot], none);
            storeRecord(boat.third[slot], none);
        }
    }
}

} // namespace

void initialiseArea(SharedArea& area) noexcept {
    initialiseHeader(area);
    initialiseSystemValues(area);
    initialiseMob(area.mob);
    initialiseBoats(area);
    initialiseSettings(area);
    initialiseValues(area);
}

} // namespace tallowmere

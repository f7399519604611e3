#include "core/channels/area_defaults.hpp"

#include "core/channels/section_access.hpp"

#include <cstddef>
#include <iterator>
#include <type_traits>

namespace tallowmere {
namespace {

constexpr double kVariableDefaults[] = {15.85, 15.8, 4.4, 0, 3.0, 1.0, 1.0, 10.0, 5.0, 5.0, 5.0, 3.0};
constexpr std::size_t kFlagsSetByDefault[] = {0, 1, 3, 7, 21, 40, 41, 42};
constexpr ChannelIndex kLastChannel = kChannelCount - 1;

template <class T, std::size_t Size> void writeAll(T (&fields)[Size], std::type_identity_t<T> value) noexcept {
    for (T& field : fields) writeOnce(field, value);
}

/// An empty text; what lies behind the terminator stays.
template <class Char, std::size_t Size> void writeEmpty(Char (&text)[Size]) noexcept {
    writeOnce(text[0], Char{});
}

void initialiseHeader(SharedArea& area) noexcept {
    writeOnce(area.hostWindow, 0);
    writeEmpty(area.marksPath);
    writeEmpty(area.databasePath);
    writeEmpty(area.dataFolder);
    writeEmpty(area.text544);
    for (auto& text : area.texts1648) writeEmpty(text);
    writeEmpty(area.text253244);
    area.number253178 = 32767; // not aligned, so the one field that is not written in one piece
    writeOnce(area.trackReset, 0);
    for (EventRecord& event : area.events) {
        writeOnce(event.time, kNoTime);
        writeOnce(event.flag, 0);
        writeAll(event.values, NO_VALUE);
    }
    writeAll(area.times, kNoTime);
    for (auto& row : area.alternates.cells) writeAll(row, kNone16);
    writeOnce(area.boatCount, 0);
}

void initialiseSystemValues(SharedArea& area) noexcept {
    writeAll(area.systemVariables, NO_VALUE);
    for (std::size_t index = 0; index < std::size(kVariableDefaults); ++index)
        writeOnce(area.systemVariables[index], kVariableDefaults[index]);
    writeAll(area.systemIntegers, 0);
    writeOnce(area.systemIntegers[6], 5); // KEPT: a value that its own setter never produces
    writeOnce(area.systemIntegers[10], 60);
    writeAll(area.systemFlags, 0);
    for (const std::size_t flag : kFlagsSetByDefault) writeOnce(area.systemFlags[flag], 1);
}

void initialiseMob(MobMark& mob) noexcept {
    writeEmpty(mob.name);
    writeOnce(mob.name[std::size(mob.name) - 1], '\0');
    writeOnce(mob.latitude, NO_VALUE);
    writeOnce(mob.longitude, NO_VALUE);
    writeOnce(mob.flagA, 0);
    writeOnce(mob.flagB, 0);
}

void initialiseBoats(SharedArea& area) noexcept {
    for (BoatEntry& boat : area.boats) {
        writeOnce(boat.number, kNoBoatNumber);
        writeOnce(boat.hasData, 0);
        writeEmpty(boat.name);
        writeOnce(boat.mmsi, 0);
        writeOnce(boat.colour, kDefaultBoatColour);
    }
}

void initialiseSettings(SharedArea& area) noexcept {
    for (std::size_t channel = 0; channel < kChannelCount; ++channel) {
        ChannelSetting& setting = area.settings[channel];
        for (std::uint8_t* const byte :
             {&setting.calibrate, &setting.blocked, &setting.written, &setting.log, &setting.writeLockable})
            writeOnce(*byte, 0);
        writeOnce(setting.precision, kCatalogue[channel].precision);
        writeOnce(setting.unitClass, static_cast<std::int16_t>(kCatalogue[channel].unitClass()));
        writeOnce(setting.damping, 0);
        writeEmpty(setting.longName);
        writeEmpty(setting.shortName);
    }
    // KEPT: the loop's last channel alone; channels.xml's reset sets the others from the catalogue.
    writeOnce(area.settings[kLastChannel].log, 1);
}

void initialiseValues(SharedArea& area) noexcept {
    FullBoatBlock& own = area.fullBlocks[0]; // KEPT: boat 1's block stays as the system supplied it
    for (std::size_t channel = 0; channel < kChannelCount; ++channel) {
        const Record none = Record::none(storageKindOf(kCatalogue[channel].unitClass()));
        writeOnce(own.stamps[channel], kNoTime);
        storeRecord(own.current[channel], none);
        storeRecord(own.second[channel], none);
        storeRecord(own.third[channel], none);
        writeOnce(own.marks[channel], 0);
        writeOnce(own.records[channel][0], 0);

        const std::uint16_t slot = kCatalogue[channel].compactIndex;
        if (slot == kNone16) continue;
        for (CompactBoatBlock& boat : area.compactBlocks) {
            writeOnce(boat.stamps[slot], kNoTime);
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

// The shared section, byte for byte: a contract between every process that maps it.
//
// Two-byte packing, little-endian, every gap a named member. Nothing here is trusted when read: any
// process may write any byte at any time (section_access.hpp). The meaning of the reserved members
// belongs to programs built on the section; the library only initialises them.
#pragma once

#include "core/channels/catalogue.hpp"

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace tallowmere {

inline constexpr std::size_t kSharedAreaBytes = 253336;
inline constexpr std::size_t kPathCharacters = 260; // stored paths: at most 259 and a terminator
inline constexpr std::size_t kSystemVariableCount = ZAN_SYSTEM_VARIABLE_COUNT;
inline constexpr std::size_t kSystemIntegerCount = 13;
inline constexpr std::size_t kSystemFlagCount = ZAN_SYSTEM_FLAG_COUNT;
inline constexpr std::size_t kAlternateRows = 10;
inline constexpr std::size_t kAlternateColumns = 9;
inline constexpr std::size_t kCompactBoatCount = kBoatCount - kFullBoatCount;
inline constexpr std::int64_t kNoTime = ZAN_NO_TIME;
inline constexpr std::uint32_t kDefaultBoatColour = 0x90EE90; // light green; red in the low byte
inline constexpr std::uint32_t kNoBoatNumber = 32767;

#pragma pack(push, 2)

struct EventRecord {
    std::uint8_t reserved0[8];
    std::int64_t time;
    std::uint8_t flag;
    std::uint8_t reserved17[7];
    double values[3];
};

/// Row r: what alternating channel 117 + r stands for, by situation. 32767: nothing.
struct AlternateTable {
    std::int32_t cells[kAlternateRows][kAlternateColumns];
};

struct ChannelSetting {
    std::uint8_t calibrate;     // 1: values written pass through calibration
    std::uint8_t blocked;       // 1: writes are ignored
    std::uint8_t written;       // 1: a valid value has been stored since creation
    std::uint8_t log;           // 1: programs that log keep this channel
    std::uint8_t writeLockable; // 1: writes are ignored while system flag 52 is set
    std::uint8_t padding5;
    std::uint16_t precision; // decimals; 255 none
    std::uint16_t damping;
    std::int16_t unitClass;
    char16_t longName[32];  // empty: the catalogue's
    char16_t shortName[16]; // empty: the catalogue's
};

struct BoatEntry {
    std::uint32_t number; // 32767 at creation
    std::uint8_t hasData; // 1: a valid value has been stored for the boat
    std::uint8_t reserved5;
    char16_t name[32];
    std::uint8_t reserved70[2];
    std::uint32_t mmsi;   // 0: none
    std::uint32_t colour; // red in the low byte, then green, then blue
};

/// Boats 0 and 1, arrays by channel.
struct FullBoatBlock {
    std::int64_t stamps[kChannelCount]; // 100 ns since 1601-01-01 UTC
    ChannelValue current[kChannelCount];
    ChannelValue second[kChannelCount];
    ChannelValue third[kChannelCount];
    std::uint8_t marks[kChannelCount];
    std::uint8_t records[kChannelCount][16];
    std::uint8_t padding30222[2];
};

/// Boats 2 to 99, arrays by compact slot.
struct CompactBoatBlock {
    std::int64_t stamps[kCompactSlotCount];
    ChannelValue current[kCompactSlotCount];
    ChannelValue third[kCompactSlotCount];
};

struct MobMark {
    char name[32]; // the last byte is always 0
    std::uint8_t padding32[4];
    double latitude;
    double longitude;
    std::uint8_t flagA;
    std::uint8_t flagB;
    std::uint8_t padding54[6];
};

struct SharedArea {
    std::uint8_t reserved0[8];
    std::uint64_t hostWindow; // 0: no host
    std::uint8_t reserved16[8];
    char16_t marksPath[kPathCharacters];
    char16_t text544[32];
    char16_t databasePath[kPathCharacters];
    char16_t dataFolder[kPathCharacters];
    char16_t texts1648[6][32];
    std::uint8_t reserved2032[8];
    EventRecord events[64];
    std::uint8_t reserved5112[32];
    AlternateTable alternates;
    double systemVariables[kSystemVariableCount];
    std::int32_t systemIntegers[kSystemIntegerCount];
    std::uint8_t systemFlags[kSystemFlagCount];
    std::int64_t times[15];
    std::uint32_t boatCount; // one more than the highest boat that has received a valid value
    ChannelSetting settings[kChannelCount];
    BoatEntry boats[kBoatCount];
    std::uint8_t gap59092[4];
    FullBoatBlock fullBlocks[kFullBoatCount];
    CompactBoatBlock compactBlocks[kCompactBoatCount]; // boat b is [b - 2]
    std::uint8_t reserved252824[352];
    std::uint8_t trackReset; // 1 while a boat's recorded track is being emptied
    std::uint8_t reserved253177;
    std::uint32_t number253178; // 32767 at creation
    std::uint8_t reserved253182[62];
    char text253244[32];
    MobMark mob;
};

#pragma pack(pop)

template <class T>
inline constexpr bool kIsPlainRecord = std::is_standard_layout_v<T>&& std::is_trivially_copyable_v<T>;

static_assert(sizeof(char16_t) == 2 && sizeof(double) == 8);

static_assert(kIsPlainRecord<ChannelValue> && sizeof(ChannelValue) == 16);
static_assert(offsetof(ChannelValue, kind) == 0 && offsetof(ChannelValue, payload) == 8);

static_assert(kIsPlainRecord<EventRecord> && sizeof(EventRecord) == 48);
static_assert(offsetof(EventRecord, time) == 8);
static_assert(offsetof(EventRecord, flag) == 16);
static_assert(offsetof(EventRecord, values) == 24);

static_assert(kIsPlainRecord<AlternateTable> && sizeof(AlternateTable) == 360);

static_assert(kIsPlainRecord<ChannelSetting> && sizeof(ChannelSetting) == 108);
static_assert(offsetof(ChannelSetting, calibrate) == 0);
static_assert(offsetof(ChannelSetting, blocked) == 1);
static_assert(offsetof(ChannelSetting, written) == 2);
static_assert(offsetof(ChannelSetting, log) == 3);
static_assert(offsetof(ChannelSetting, writeLockable) == 4);
static_assert(offsetof(ChannelSetting, precision) == 6);
static_assert(offsetof(ChannelSetting, damping) == 8);
static_assert(offsetof(ChannelSetting, unitClass) == 10);
static_assert(offsetof(ChannelSetting, longName) == 12);
static_assert(offsetof(ChannelSetting, shortName) == 76);

static_assert(kIsPlainRecord<BoatEntry> && sizeof(BoatEntry) == 80);
static_assert(offsetof(BoatEntry, number) == 0);
static_assert(offsetof(BoatEntry, hasData) == 4);
static_assert(offsetof(BoatEntry, name) == 6);
static_assert(offsetof(BoatEntry, mmsi) == 72);
static_assert(offsetof(BoatEntry, colour) == 76);

static_assert(kIsPlainRecord<FullBoatBlock> && sizeof(FullBoatBlock) == 30224);
static_assert(offsetof(FullBoatBlock, stamps) == 0);
static_assert(offsetof(FullBoatBlock, current) == 3312);
static_assert(offsetof(FullBoatBlock, second) == 9936);
static_assert(offsetof(FullBoatBlock, third) == 16560);
static_assert(offsetof(FullBoatBlock, marks) == 23184);
static_assert(offsetof(FullBoatBlock, records) == 23598);
static_assert(offsetof(FullBoatBlock, padding30222) == 30222);

static_assert(kIsPlainRecord<CompactBoatBlock> && sizeof(CompactBoatBlock) == 1360);
static_assert(offsetof(CompactBoatBlock, stamps) == 0);
static_assert(offsetof(CompactBoatBlock, current) == 272);
static_assert(offsetof(CompactBoatBlock, third) == 816);

static_assert(kIsPlainRecord<MobMark> && sizeof(MobMark) == 60);

static_assert(kIsPlainRecord<SharedArea> && sizeof(SharedArea) == kSharedAreaBytes);
static_assert(offsetof(SharedArea, hostWindow) == 8);
static_assert(offsetof(SharedArea, reserved16) == 16);
static_assert(offsetof(SharedArea, marksPath) == 24);
static_assert(offsetof(SharedArea, text544) == 544);
static_assert(offsetof(SharedArea, databasePath) == 608);
static_assert(offsetof(SharedArea, dataFolder) == 1128);
static_assert(offsetof(SharedArea, texts1648) == 1648);
static_assert(offsetof(SharedArea, reserved2032) == 2032);
static_assert(offsetof(SharedArea, events) == 2040);
static_assert(offsetof(SharedArea, reserved5112) == 5112);
static_assert(offsetof(SharedArea, alternates) == 5144);
static_assert(offsetof(SharedArea, systemVariables) == 5504);
static_assert(offsetof(SharedArea, systemIntegers) == 6144);
static_assert(offsetof(SharedArea, systemFlags) == 6196);
static_assert(offsetof(SharedArea, times) == 6256);
static_assert(offsetof(SharedArea, boatCount) == 6376);
static_assert(offsetof(SharedArea, settings) == 6380);
static_assert(offsetof(SharedArea, boats) == 51092);
static_assert(offsetof(SharedArea, gap59092) == 59092);
static_assert(offsetof(SharedArea, fullBlocks) == 59096);
static_assert(offsetof(SharedArea, compactBlocks) == 119544);
static_assert(offsetof(SharedArea, reserved252824) == 252824);
static_assert(offsetof(SharedArea, trackReset) == 253176);
static_assert(offsetof(SharedArea, number253178) == 253178);
static_assert(offsetof(SharedArea, text253244) == 253244);
static_assert(offsetof(SharedArea, mob) == 253276);
static_assert(offsetof(SharedArea, mob) + offsetof(MobMark, latitude) == 253312);
static_assert(offsetof(SharedArea, mob) + offsetof(MobMark, longitude) == 253320);
static_assert(offsetof(SharedArea, mob) + offsetof(MobMark, flagA) == 253328);
static_assert(offsetof(SharedArea, mob) + offsetof(MobMark, flagB) == 253329);

// Every 8-byte field lies on an 8-byte boundary of the page-aligned mapping and every 4-byte field but
// one on a 4-byte boundary, although the records are packed: so each is read and written in one piece.
static_assert(offsetof(SharedArea, systemVariables) % 8 == 0 && offsetof(SharedArea, times) % 8 == 0);
static_assert(offsetof(SharedArea, fullBlocks) % 8 == 0 && sizeof(FullBoatBlock) % 8 == 0);
static_assert(offsetof(SharedArea, compactBlocks) % 8 == 0 && sizeof(CompactBoatBlock) % 8 == 0);
static_assert(offsetof(SharedArea, events) % 8 == 0 && sizeof(EventRecord) % 8 == 0);
static_assert(offsetof(SharedArea, alternates) % 4 == 0 && offsetof(SharedArea, systemIntegers) % 4 == 0);
static_assert(offsetof(SharedArea, boatCount) % 4 == 0);
static_assert(offsetof(SharedArea, boats) % 4 == 0 && sizeof(BoatEntry) % 4 == 0);
static_assert(offsetof(SharedArea, settings) % 2 == 0 && sizeof(ChannelSetting) % 2 == 0);

} // namespace tallowmere

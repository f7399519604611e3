// The twenty calibration items as they are compiled in. Constant; the live items are in calibration.hpp.
#pragma once

#include "core/channels/catalogue.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tallowmere {

inline constexpr std::size_t kCalibrationItemCount = 20;

/// Items by name; each is asserted against its row below.
namespace calibration_item {
enum : std::size_t {
    kRateOfTurn,
    kAcceleration,
    kBsp,
    kAws,
    kAwaOffset,
    kAwa,
    kTws,
    kTwa,
    kHdg,
    kTwd,
    kLeeway,
    kHeel,
    kTrim,
    kMastAngle,
    kRudderAngle,
    kWindWeight,
    kMastHeight,
    kSeaTemp,
    kBrake,
    kBaro,
};
} // namespace calibration_item

/// One item. Knot k of a row lies at columnStart + k * columnStep, row j at rowStart + j * rowStep.
struct CalibrationItemDef {
    std::int32_t id;           // equals the row's position
    std::uint16_t channel;     // the channel that it calibrates; 32767: none
    std::uint16_t columnInput; // the channel whose value is looked up along a row; 32767: none
    std::uint16_t rowInput;    // the channel whose value chooses the row; 32767: none
    std::uint8_t columns;
    std::uint8_t rows;
    float defaultValue; // of every knot, in `unit`
    float columnStart;  // positions and steps in the unit of the input channels
    float rowStart;
    float columnStep;
    float rowStep;
    std::uint8_t sharedColumns; // 1: all rows have the same knot positions
    std::uint8_t useByDefault;
    std::uint8_t alwaysApply; // 1: evaluated even when not in use
    const char16_t* unit;
    const char16_t* name; // also names the item's file
};

// Deliberate and kept as they stand: "SeaTemp" in "°"; the empty units; "Acceleration" with inputs though it
// calibrates no channel; "Tws" and "Twa" with ten columns though they step by 45; useByDefault and
// alwaysApply are the same in every row.
//
// clang-format off
inline constexpr std::array<CalibrationItemDef, kCalibrationItemCount> kCalibrationItems{{
//   id  channel       column input  row input    cols rows value  start: col row  step: col row  shared  use always  unit         name
    { 0, kNone16,      ZAN_BSP,      kNone16,       7,  1,   15,            0,  0,         5,  0,      1,  1,     1,   u"°/s",      u"Rate of turn"},
    { 1, kNone16,      ZAN_TWS,      ZAN_TWA,       7,  1,   10,            0,  0,         5, 45,      1,  1,     1,   u"kt/min",   u"Acceleration"},
    { 2, ZAN_BSP,      ZAN_BSP,      ZAN_HEEL,      7,  1,    0,            0,  0,         5,  0,      1,  0,     0,   u"kt",       u"Bsp"},
    { 3, ZAN_AWS,      ZAN_AWA,      ZAN_AWS,       5,  7,    0,            0,  0,        45,  5,      1,  0,     0,   u"kt",       u"Aws"},
    { 4, ZAN_AWA,      ZAN_AWA,      kNone16,       1,  1,    0,            0,  0,         0,  0,      1,  0,     0,   u"°",        u"AwaOffset"},
    { 5, ZAN_AWA,      ZAN_AWA,      ZAN_AWS,       5,  7,    0,            0,  0,        45,  5,      1,  0,     0,   u"°",        u"Awa"},
    { 6, ZAN_TWS,      ZAN_TWA,      ZAN_TWS,      10,  7,    0,            0,  0,        45,  5,      0,  0,     0,   u"kt",       u"Tws"},
    { 7, ZAN_TWA,      ZAN_TWA,      ZAN_TWS,      10,  7,    0,            0,  0,        45,  5,      0,  0,     0,   u"°",        u"Twa"},
    { 8, ZAN_HDG,      ZAN_HDG,      kNone16,       1,  1,    0,            0,  0,         0,  0,      1,  0,     0,   u"°",        u"Hdg"},
    { 9, ZAN_TWD,      ZAN_TWD,      kNone16,       1,  1,    0,            0,  0,         0,  0,      1,  0,     0,   u"°",        u"Twd"},
    {10, ZAN_LEEWAY,   ZAN_TWA,      ZAN_TWS,       1,  1,   13,            0,  0,        45,  5,      1,  1,     1,   u"",         u"Leeway"},
    {11, ZAN_HEEL,     ZAN_HEEL,     kNone16,       1,  1,    0,            0,  0,         0,  0,      1,  0,     0,   u"°",        u"Heel"},
    {12, ZAN_TRIM,     ZAN_TRIM,     kNone16,       1,  1,    0,            0,  0,         0,  0,      1,  0,     0,   u"°",        u"Trim"},
    {13, ZAN_MASTANG,  ZAN_MASTANG,  kNone16,       1,  1,    0,            0,  0,         0,  0,      1,  0,     0,   u"°",        u"MastAngle"},
    {14, ZAN_RUDDER,   ZAN_RUDDER,   kNone16,       1,  1,    0,            0,  0,         0,  0,      1,  0,     0,   u"°",        u"RudderAngle"},
    {15, kNone16,      kNone16,      kNone16,       1,  1,    1,            0,  0,         0,  0,      1,  0,     0,   u"",         u"Wind weight"},
    {16, kNone16,      kNone16,      kNone16,       1,  1,   10,            0,  0,         0,  0,      1,  1,     1,   u"",         u"Mast height"},
    {17, ZAN_SEATEMP,  ZAN_SEATEMP,  kNone16,       1,  1,    0,            0,  0,         0,  0,      1,  0,     0,   u"°",        u"SeaTemp"},
    {18, kNone16,      ZAN_ROT,      kNone16,       5,  1,  100,            0,  0,        30,  0,      1,  0,     0,   u"s to stop", u"Brake"},
    {19, ZAN_BARO,     ZAN_BARO,     kNone16,       6,  1,    0,          900,  0,        50,  0,      1,  0,     0,   u"mb",       u"Baro"},
}};
// clang-format on

namespace calibration_checks {

consteval bool idsEqualRows() {
    for (std::size_t row = 0; row < kCalibrationItemCount; ++row)
        if (kCalibrationItems[row].id != static_cast<std::int32_t>(row)) return false;
    return true;
}

consteval bool channelsExist() {
    const auto fine = [](std::uint16_t channel) { return channel == kNone16 || channel < kChannelCount; };
    return std::ranges::all_of(kCalibrationItems, [&](const CalibrationItemDef& row) {
        return fine(row.channel) && fine(row.columnInput) && fine(row.rowInput);
    });
}

consteval bool stepsSuitCounts() {
    return std::ranges::all_of(kCalibrationItems, [](const CalibrationItemDef& row) {
        return row.columns >= 1 && row.rows >= 1 && (row.columns == 1 || row.columnStep > 0) &&
               (row.rows == 1 || row.rowStep > 0);
    });
}

/// Names differ, so each item has a file of its own.
consteval bool namesDiffer() {
    for (std::size_t a = 0; a < kCalibrationItemCount; ++a)
        for (std::size_t b = a + 1; b < kCalibrationItemCount; ++b)
            if (std::u16string_view(kCalibrationItems[a].name) == kCalibrationItems[b].name) return false;
    return true;
}

/// The four items that apply whether in use or not, none of which corrects a value that is written.
consteval bool alwaysAppliedAreTheFour() {
    return std::ranges::all_of(kCalibrationItems, [](const CalibrationItemDef& row) {
        const bool expected = row.id == 0 || row.id == 1 || row.id == 10 || row.id == 16;
        return row.alwaysApply == (expected ? 1 : 0) && row.useByDefault == row.alwaysApply;
    });
}

consteval bool isNamed(std::size_t item, std::u16string_view name) {
    return kCalibrationItems[item].name == name;
}

static_assert(idsEqualRows());
static_assert(channelsExist());
static_assert(stepsSuitCounts());
static_assert(namesDiffer());
static_assert(alwaysAppliedAreTheFour());
static_assert(isNamed(calibration_item::kRateOfTurn, u"Rate of turn"));
static_assert(isNamed(calibration_item::kAcceleration, u"Acceleration"));
static_assert(isNamed(calibration_item::kBsp, u"Bsp"));
static_assert(isNamed(calibration_item::kAws, u"Aws"));
static_assert(isNamed(calibration_item::kAwaOffset, u"AwaOffset"));
static_assert(isNamed(calibration_item::kAwa, u"Awa"));
static_assert(isNamed(calibration_item::kTws, u"Tws"));
static_assert(isNamed(calibration_item::kTwa, u"Twa"));
static_assert(isNamed(calibration_item::kHdg, u"Hdg"));
static_assert(isNamed(calibration_item::kTwd, u"Twd"));
static_assert(isNamed(calibration_item::kLeeway, u"Leeway"));
static_assert(isNamed(calibration_item::kHeel, u"Heel"));
static_assert(isNamed(calibration_item::kTrim, u"Trim"));
static_assert(isNamed(calibration_item::kMastAngle, u"MastAngle"));
static_assert(isNamed(calibration_item::kRudderAngle, u"RudderAngle"));
static_assert(isNamed(calibration_item::kWindWeight, u"Wind weight"));
static_assert(isNamed(calibration_item::kMastHeight, u"Mast height"));
static_assert(isNamed(calibration_item::kSeaTemp, u"SeaTemp"));
static_assert(isNamed(calibration_item::kBrake, u"Brake"));
static_assert(isNamed(calibration_item::kBaro, u"Baro"));

} // namespace calibration_checks
} // namespace tallowmere

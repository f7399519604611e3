#include "core/second_stage.hpp"

#include "core/channels/attempt.hpp"
#include "core/channels/system_values.hpp"
#include "settings/data_folders.hpp"
#include "settings/reg_ex.hpp"

#include <algorithm>
#include <array>

namespace tallowmere {
namespace {

struct BlockingRow {
    std::size_t flag;
    std::array<std::uint16_t, 2> channels; // 32767: none
};

// clang-format off
constexpr std::array<BlockingRow, 13> kBlockingRows{{
    // flag  channels that the host computes itself while it is set
    {22, {ZAN_LEEWAY,   kNone16}},
    {23, {ZAN_LEEWAY,   kNone16}},
    {24, {ZAN_TRIMRATE, ZAN_HEELRATE}},
    {25, {ZAN_SET,      ZAN_DRIFT}},
    {26, {ZAN_TWA,      ZAN_TWS}},
    {28, {ZAN_TWD,      kNone16}},
    {27, {ZAN_ROT,      kNone16}},
    {29, {kNone16,      kNone16}},
    {30, {kNone16,      kNone16}},
    {31, {kNone16,      kNone16}},
    {32, {kNone16,      kNone16}},
    {33, {kNone16,      kNone16}},
    { 8, {ZAN_DEWPT,    kNone16}},
}};
// clang-format on

static_assert(std::ranges::all_of(kBlockingRows, [](const BlockingRow& row) { return row.flag < kSystemFlagCount; }));

} // namespace

void blockChannelsByFlags(const Context& context) noexcept {
    if (context.area == nullptr) return;
    for (const BlockingRow& row : kBlockingRows) {
        const std::uint8_t flag = SystemValues(context.area).flag(row.flag);
        for (const std::uint16_t channel : row.channels) {
            if (channel >= kChannelCount) continue;
            std::uint8_t& blocked = context.area->settings[channel].blocked;
            writeOnce(blocked, static_cast<std::uint8_t>(readOnce(blocked) | flag));
        }
    }
}

void startCalibration(Calibration& calibration) noexcept {
    for (std::size_t id = 0; id < kCalibrationItemCount; ++id) attempt([&] { calibration.ResetCalibrationItem(id); });
    attempt([&] { calibration.ReadCalibrationSettings(); });
    for (std::size_t id = 0; id < kCalibrationItemCount; ++id) {
        attempt([&] { calibration.loadCalibrationFile(id); });
        calibration.UpdateCalibratedFlag(id);
    }
}

void writeHostLocation(platform::Platform& platform) {
    CRegEx key(platform);
    key.Create(kCoreKey);
    key.writeString(u"Location", GetHostFolder(platform));
}

} // namespace tallowmere

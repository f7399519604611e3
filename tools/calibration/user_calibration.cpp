#include "tools/calibration/user_calibration.hpp"

#include "core/ccore.hpp"
#include "core/channels/area_defaults.hpp"
#include "core/second_stage.hpp"
#include "settings/core_settings.hpp"
#include "settings/data_folders.hpp"

#include <cstring>

namespace tallowmere::tools {
namespace {

std::unique_ptr<SharedArea> copyOrMakeArea(LookingPlatform& platform) {
    auto area = std::make_unique<SharedArea>();
    if (const auto section = platform.lookAtSection(sectionName(), kSharedAreaBytes)) {
        std::memcpy(area.get(), section->view(), sizeof *area);
        return area;
    }
    initialiseArea(*area);
    readCoreSettings(Context{platform, area.get()});
    return area;
}

bool isChannel(std::int32_t channel) noexcept {
    return channel >= 0 && channel < static_cast<std::int32_t>(kChannelCount);
}

} // namespace

UserCalibration::UserCalibration(const platform::Platform& platform)
    : platform_(platform), area_(copyOrMakeArea(platform_)), values_(Context{platform_, area_.get()}, &calibration_),
      calibration_(&values_) {
    for (std::size_t id = 0; id < kCalibrationItemCount; ++id) calibration_.ResetCalibrationItem(id);
    calibration_.ReadCalibrationSettings();
    for (std::size_t id = 0; id < kCalibrationItemCount; ++id) {
        calibration_.loadCalibrationFile(id);
        calibration_.UpdateCalibratedFlag(id);
    }
    blockChannelsByFlags(values_.context()); // as the host does that corrects written values
}

std::u16string UserCalibration::configFile(std::u16string_view name) const {
    return dataFile(values_.context(), u"config", name);
}

double UserCalibration::current(std::int32_t channel) const noexcept {
    if (!isChannel(channel)) return NO_VALUE;
    const auto index = static_cast<ChannelIndex>(channel);
    return values_.recordAsDouble(index, values_.fetch(index, 0).record).value;
}

void UserCalibration::pretend(std::int32_t channel, double value) noexcept {
    if (!isChannel(channel)) return;
    const auto index = static_cast<ChannelIndex>(channel);
    if (readOnce(area_->boatCount) == 0) writeOnce(area_->boatCount, 1); // no boat, no values
    storeRecord(area_->fullBlocks[0].current[index], values_.doubleToRecord(index, value).record);
}

std::optional<double> UserCalibration::write(ChannelIndex channel, double value) noexcept {
    if (!values_.storeDouble(channel, value, 0)) return std::nullopt;
    return current(channel);
}

} // namespace tallowmere::tools

#include "core/ccore.hpp"

#include "core/channels/area_defaults.hpp"
#include "core/channels/attempt.hpp"
#include "core/config/alternate_table.hpp"
#include "core/config/boats_file.hpp"
#include "core/config/channels_file.hpp"
#include "core/second_stage.hpp"
#include "log/system_log.hpp"
#include "settings/core_settings.hpp"
#include "settings/reg_ex.hpp"

namespace tallowmere {
namespace {

constexpr int kBusyPolls = 5;
constexpr unsigned kBusyPollMilliseconds = 50;

SharedArea* areaOf(const std::unique_ptr<platform::SharedSection>& section) noexcept {
    return section != nullptr ? reinterpret_cast<SharedArea*>(section->view()) : nullptr;
}

void reportFailure(platform::Platform& platform, const char16_t* message) noexcept {
    attempt([&] { WriteSystemLog(Context{platform, nullptr}, message); });
    platform.postQuit();
}

} // namespace

CCore::CCore(bool bStart) noexcept : CCore(platform::hostPlatform(), bStart) {}

CCore::CCore(platform::Platform& platform, bool bStart) noexcept
    : calibration_(&values_), section_(attachSection(platform)),
      values_(Context{platform, areaOf(section_)}, &calibration_) {
    if (area() != nullptr && !section_->existed()) fillNewSection();
    values_.stampTime();
    if (bStart) StartCore();
}

CCore::~CCore() {
    stopRequested_.store(1, std::memory_order_release);
    for (int poll = 0; poll < kBusyPolls && workerBusy_.load(std::memory_order_acquire) != 0; ++poll)
        context().platform.sleepMilliseconds(kBusyPollMilliseconds);
    tracks_.reset();
    reserved_.output.reset();
    setupDone_ = 1;
    values_.dropArea();
    section_.reset();
}

bool CCore::madeSection() const noexcept {
    return area() != nullptr && !section_->existed();
}

std::unique_ptr<platform::SharedSection> CCore::attachSection(platform::Platform& platform) noexcept {
    std::unique_ptr<platform::SharedSection> section;
    attempt([&] { section = platform.openOrCreateSection(sectionName(), kSharedAreaBytes); });
    if (section == nullptr)
        reportFailure(platform, u"Unable to create shared memory map");
    else if (section->view() == nullptr)
        reportFailure(platform, u"Unable to map shared memory");
    return section;
}

/// What the first process does, once, for all: defaults, the user's settings, then the files.
void CCore::fillNewSection() noexcept {
    initialiseArea(*area());
    // KEPT: making the defaults opens the core key and reads nothing from it.
    attempt([&] { CRegEx(context().platform).Open(kCoreKey); });
    attempt([&] { readCoreSettings(context()); });
    attempt([&] { readBoats(context(), tracks_.get()); });
    attempt([&] { readChannels(context()); });
    attempt([&] { readAlternateTable(context()); });
    setupDone_ = 1;
}

void CCore::StartCore() noexcept {
    blockChannelsByFlags(context());
    startCalibration(calibration_);
    attempt([&] { writeHostLocation(context().platform); });
}

} // namespace tallowmere

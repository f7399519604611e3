#include "calibration/calibration.hpp"

#include "calibration/calibration_file.hpp"
#include "calibration/default_table.hpp"
#include "core/channels/angle_steps.hpp"
#include "core/channels/held_exceptions.hpp"
#include "settings/data_folders.hpp"
#include "settings/reg_ex.hpp"

#include <algorithm>
#include <cmath>

namespace tallowmere {
namespace {

namespace which = calibration_item;

bool isChannel(std::int32_t number) noexcept {
    return number >= 0 && number < static_cast<std::int32_t>(kChannelCount);
}

std::u16string fileNameOf(const CalibrationItemDef& definition) {
    return std::u16string(u"ZAN_CAL_") + definition.name + u".txt";
}

void takeFlag(const CRegEx& key, std::u16string_view prefix, std::size_t index, std::uint8_t& flag) {
    if (const auto value = key.findWholeDword(indexedName(prefix, index))) flag = *value != 0 ? 1 : 0;
}

/// Which item's correction is added to what is written to a channel. AWA has a second one, in
/// addCorrection. KEPT: Leeway has an item and is not corrected.
struct Correction {
    ChannelIndex channel;
    std::size_t item;
};
constexpr Correction kCorrections[] = {
    {ZAN_BSP, which::kBsp},           {ZAN_AWA, which::kAwa},         {ZAN_AWS, which::kAws},
    {ZAN_TWA, which::kTwa},           {ZAN_TWS, which::kTws},         {ZAN_TWD, which::kTwd},
    {ZAN_HDG, which::kHdg},           {ZAN_SEATEMP, which::kSeaTemp}, {ZAN_BARO, which::kBaro},
    {ZAN_HEEL, which::kHeel},         {ZAN_TRIM, which::kTrim},       {ZAN_RUDDER, which::kRudderAngle},
    {ZAN_MASTANG, which::kMastAngle},
};

/// By channel; 20 where nothing is corrected.
constexpr auto kCorrectingItem = [] {
    std::array<std::uint8_t, kChannelCount> items{};
    items.fill(static_cast<std::uint8_t>(kCalibrationItemCount));
    for (const Correction& correction : kCorrections)
        items[correction.channel] = static_cast<std::uint8_t>(correction.item);
    return items;
}();

/// KEPT: one turn only, so 725 degrees become 365.
double intoRange(UnitClass unitClass, double value) noexcept {
    switch (unitClass) {
    case UnitClass::Bearing:
        return stepToBearing(value);
    case UnitClass::SignedAngle:
    case UnitClass::WindAngle:
        return stepToSigned(value);
    case UnitClass::BoatSpeed:
    case UnitClass::WindSpeed:
        return std::isless(value, 0.0) ? 0.0 : value;
    default:
        return value;
    }
}

} // namespace

void Calibration::ResetCalibrationItem(std::size_t id) {
    if (id >= kCalibrationItemCount) return;
    const CalibrationItemDef& definition = kCalibrationItems[id];
    CalibrationItem& item = items_[id];
    item.table = {};
    item.columnInput = definition.columnInput;
    item.rowInput = definition.rowInput;
    item.channel = definition.channel;
    item.use = definition.useByDefault;
    if (SharedArea* const area = values_->area(); area != nullptr && isChannel(item.channel))
        writeOnce(area->settings[definition.channel].calibrate, item.use);
    item.unit = definition.unit;
    item.name = definition.name;
    item.file = dataFile(values_->context(), u"calibration", fileNameOf(definition));
    buildDefaultTable(definition, polar_, item.table);
    BuildSplines(item.table);
}

void Calibration::ReadCalibrationSettings() {
    CRegEx key(values_->context().platform);
    key.Open(kCalibrationKey);
    if (!key.isOpen()) return;
    for (std::size_t n = 0; n < kCalibrationItemCount; ++n) {
        CalibrationItem& item = items_[n];
        item.file = key.QueryString(indexedName(u"CalFile_", n), item.file);
        takeFlag(key, u"CalUse_", n, item.use);
        takeFlag(key, u"CalLinear_", n, item.table.linear);
    }
    items_[which::kRateOfTurn].use = 1;
}

void Calibration::loadCalibrationFile(std::size_t id, const std::u16string& path) {
    if (id >= kCalibrationItemCount) return;
    CalibrationItem& item = items_[id];
    readCalibrationFile(values_->context().platform, path.empty() ? item.file : path, item.table);
    BuildSplines(item.table);
}

void Calibration::UpdateCalibratedFlag(std::size_t id) noexcept {
    SharedArea* const area = values_->area();
    if (id >= kCalibrationItemCount || area == nullptr) return;
    const std::int32_t channel = items_[id].channel;
    if (!isChannel(channel)) return;
    const bool inUse = std::ranges::any_of(
        items_, [&](const CalibrationItem& item) { return item.channel == channel && item.use != 0; });
    writeOnce(area->settings[channel].calibrate, inUse ? 1 : 0);
}

inline double Calibration::inputOf(const CalibrationItem& item, std::int32_t input, double value) const noexcept {
    // KEPT: 32767 is no input. It isn't the value written either, though an item without a channel equals it.
    if (!isChannel(input)) return NO_VALUE;
    if (input == item.channel) return value;
    const auto channel = static_cast<ChannelIndex>(input);
    return values_->recordAsDouble(channel, values_->fetch(channel, 0).record).value;
}

inline bool Calibration::isSignedAngleInput(std::int32_t input) const noexcept {
    return isChannel(input) && isSignedAngle(unitClassOf(values_->area(), static_cast<std::size_t>(input)));
}

bool Calibration::CalibrationCorrection(std::size_t id, double value, double& correction) noexcept {
    correction = NO_VALUE;
    if (id >= kCalibrationItemCount) return false;
    CalibrationItem& item = items_[id];
    if (item.use == 0 && kCalibrationItems[id].alwaysApply == 0) return false;
    if (!isChannel(item.columnInput) && !isChannel(item.rowInput)) {
        if (item.table.rows.empty() || item.table.rows[0].knots.empty()) return false;
        correction = item.table.rows[0].knots[0].y;
        return correction != NO_VALUE;
    }
    double x = inputOf(item, item.columnInput, value);
    const bool signedColumn = x != NO_VALUE && isSignedAngleInput(item.columnInput);
    // One row, the usual table: nothing looks at the row input, so it need not be fetched.
    if (item.table.rows.size() == 1 && !signedColumn) return EvalRow(item.table, 0, x, correction);
    double r = inputOf(item, item.rowInput, value);
    // KEPT: a signed column angle is replaced by the row input's size, not by its own, even when the row input
    // is missing. Pinned by CalibrationCorrection.SignedColumnAngleIsReplacedByTheRowInput.
    if (signedColumn) x = std::fabs(r);
    if (r != NO_VALUE && isSignedAngleInput(item.rowInput)) r = std::fabs(r);
    return EvalTable(item.table, x, r, correction);
}

/// The value with sign times the item's correction added; as it is where there is none.
double Calibration::corrected(std::size_t id, double value, double sign) noexcept {
    double correction = NO_VALUE;
    if (!CalibrationCorrection(id, value, correction)) return value;
    return isModerate(correction) ? value + sign * correction
                                  : withExceptionsHeld([&] { return value + sign * correction; });
}

double Calibration::addCorrection(ChannelIndex channel, double value) noexcept {
    if (channel == ZAN_AWA) value = corrected(which::kAwaOffset, value, 1.0);
    const bool mirrored = channel == ZAN_TWA && std::isless(value, 0.0);
    if (channel >= kChannelCount) return value;
    return corrected(kCorrectingItem[channel], value, mirrored ? -1.0 : 1.0);
}

double Calibration::CalibrateOnWrite(ChannelIndex channel, double value) noexcept {
    const SharedArea* const area = values_->area();
    if (area == nullptr || channel >= kChannelCount || value == NO_VALUE) return value;
    return readOnce(area->settings[channel].calibrate) != 0 ? correct(channel, value) : value;
}

double Calibration::correct(ChannelIndex channel, double value) noexcept {
    value = addCorrection(channel, value);
    return value == NO_VALUE ? value : intoRange(unitClassOf(values_->area(), channel), value);
}

} // namespace tallowmere

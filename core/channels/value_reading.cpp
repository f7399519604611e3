#include "core/channels/value_reading.hpp"

#include "core/channels/time_scale.hpp"

#include <limits>

namespace tallowmere {
namespace {

/// Adds half a second and cuts the fraction of a second off, toward zero; in ticks all the same.
std::int64_t roundedToSeconds(std::int64_t ticks) noexcept {
    constexpr std::int64_t half = kTicksPerSecond / 2;
    const std::int64_t seconds =
        ticks >= 0 ? static_cast<std::int64_t>((static_cast<std::uint64_t>(ticks) + half) / kTicksPerSecond)
                   : (ticks + half) / kTicksPerSecond;
    return seconds * kTicksPerSecond;
}

double daysFromTicks(UnitClass unitClass, std::int64_t ticks) noexcept {
    switch (unitClass) {
    case UnitClass::DateTime:
        if (ticks == kNoTime) return 0.0;
        return static_cast<double>(roundedToSeconds(ticks)) / kTicksPerDay - kDaysFrom1601To1899;
    case UnitClass::TimeSpan:
        if (ticks == kNoTime) return std::numeric_limits<double>::quiet_NaN();
        return static_cast<double>(ticks) / kTicksPerDay;
    default:
        return NO_VALUE;
    }
}

/// A record that holds a value, by its own kind byte; 32767.0 when that can't be converted.
double convert(const SharedArea* area, ChannelIndex channel, Record record) noexcept {
    switch (static_cast<StorageKind>(record.kind())) {
    case StorageKind::Byte:
        return record.byte();
    case StorageKind::Double:
        return record.number();
    case StorageKind::Integer:
        return record.integer();
    case StorageKind::Time:
        return daysFromTicks(unitClassOf(area, channel), record.ticks());
    default:
        return NO_VALUE;
    }
}

} // namespace

DoubleResult recordAsDouble(const SharedArea* area, ChannelIndex channel, Record record) noexcept {
    if (channel >= kChannelCount || !record.holds(storageKindOf(area, channel))) return {};
    const double value = convert(area, channel, record);
    return {value, value != NO_VALUE};
}

bool detail::readConverted(const SharedArea* area, ChannelIndex channel, Record record, double& value) noexcept {
    if (!record.holds(storageKindOf(area, channel))) return false;
    value = convert(area, channel, record);
    return value != NO_VALUE;
}

} // namespace tallowmere

#include "tools/commands/reading.hpp"

#include "core/config/alternate_table.hpp"
#include "tools/commands/format.hpp"
#include "tools/commands/text.hpp"
#include "units/unit_names.hpp"

namespace tallowmere::tools {
namespace {

constexpr double kTicksPerSecond = 1e7;
constexpr std::int64_t kMostAhead = 100'000'000; // ten seconds, for clocks that are set while programs run

/// The library derives these values from others, and what it leaves in the record's header is not the kind.
bool hasForeignHeader(ChannelIndex channel) noexcept {
    switch (channel) {
    case ZAN_ROT:
    case ZAN_GPS_TOFFSET:
    case ZAN_TRIMRATE:
    case ZAN_HEELRATE:
    case ZAN_RUDDERTOE:
        return true;
    default:
        return false;
    }
}

std::string formatRecord(const SharedArea* area, ChannelIndex channel, const Record& record) {
    const UnitClass unitClass = unitClassOf(area, channel);
    const auto kind =
        hasForeignHeader(channel) ? storageKindOf(area, channel) : static_cast<StorageKind>(record.kind());
    switch (kind) {
    case StorageKind::Byte:
        return std::to_string(record.byte());
    case StorageKind::Integer:
        return std::to_string(record.integer());
    case StorageKind::Double: {
        const unsigned decimals =
            area != nullptr ? readOnce(area->settings[channel].precision) : kCatalogue[channel].precision;
        return formatQuantity(unitClass, record.number(), decimals);
    }
    case StorageKind::Time:
        if (unitClass == UnitClass::DateTime) return formatMoment(record.ticks());
        if (unitClass == UnitClass::TimeSpan) return formatSpan(record.ticks());
        break;
    }
    return kNoValueText; // a kind that no client can read either
}

/// Positions, moments and spans name their unit themselves.
std::string unitShown(UnitClass unitClass) {
    switch (unitClass) {
    case UnitClass::DateTime:
    case UnitClass::TimeSpan:
    case UnitClass::Latitude:
    case UnitClass::Longitude:
        return {};
    default:
        return unitNameOf(unitClass).baseUnit;
    }
}

} // namespace

std::optional<double> ageSeconds(std::int64_t stamp, std::int64_t now) noexcept {
    if (stamp <= 0 || stamp == kNoTime || now <= 0) return std::nullopt;
    if (stamp <= now) return static_cast<double>(now - stamp) / kTicksPerSecond;
    if (stamp - now <= kMostAhead) return 0.0;
    return std::nullopt;
}

std::optional<std::int64_t> stampOf(const SharedArea* area, ChannelIndex channel, BoatIndex boat) noexcept {
    if (area == nullptr || channel >= kChannelCount || boat >= kBoatCount) return std::nullopt;
    const auto slot = valueSlotOf(*area, channel, boat);
    return slot ? std::optional(readOnce(*slot.stamp)) : std::nullopt;
}

Freshness freshnessOf(const ValueStore& values, ChannelIndex channel, BoatIndex boat, std::int64_t now) noexcept {
    if (!values.fetch(channel, boat).holdsValue) return Freshness::None;
    const std::uint16_t timeout = kCatalogue[channel].timeoutSeconds;
    if (timeout == 0) return Freshness::Live;
    const auto stamp = stampOf(values.area(), channel, boat);
    const auto age = stamp ? ageSeconds(*stamp, now) : std::nullopt;
    return age && *age <= timeout ? Freshness::Live : Freshness::Stale;
}

Reading readChannel(const ValueStore& values, ChannelIndex channel, BoatIndex boat, std::int64_t now) {
    const SharedArea* const area = values.area();
    Reading reading;
    reading.name = nameOf(area, channel);

    const ChannelIndex source = isAlternating(channel) ? resolveAlternating(values, channel) : channel;
    if (source >= kChannelCount) return reading;
    if (source != channel) reading.name += " > " + nameOf(area, source);
    reading.unit = unitShown(unitClassOf(area, source));

    const RecordResult found = values.fetch(source, boat);
    if (!found.holdsValue) return reading;
    reading.value = formatRecord(area, source, found.record);
    if (const auto stamp = stampOf(area, source, boat)) reading.age = ageSeconds(*stamp, now);
    reading.freshness = freshnessOf(values, source, boat, now);
    return reading;
}

std::string nameOf(const SharedArea* area, ChannelIndex channel) {
    const std::u16string name = shortNameOf(area, channel);
    return printable(name.empty() ? longNameOf(area, channel) : name);
}

} // namespace tallowmere::tools

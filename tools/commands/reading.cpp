#include "tools/commands/reading.hpp"

#include "core/config/alternate_table.hpp"
#include "tools/commands/format.hpp"
#include "tools/commands/text.hpp"
#include "units/unit_names.hpp"

namespace tallowmere::tools {
namespace {

std::string formatRecord(const SharedArea* area, ChannelIndex channel, const Record& record) {
    const UnitClass unitClass = unitClassOf(area, channel);
    switch (static_cast<StorageKind>(record.kind())) {
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

std::optional<std::int64_t> stampOf(const SharedArea* area, ChannelIndex channel, BoatIndex boat) noexcept {
    if (area == nullptr || channel >= kChannelCount || boat >= kBoatCount) return std::nullopt;
    const auto slot = valueSlotOf(*area, channel, boat);
    return slot ? std::optional(readOnce(*slot.stamp)) : std::nullopt;
}

Freshness freshnessOf(const SharedArea* area, ChannelIndex channel, BoatIndex boat, std::int64_t now) noexcept {
    const auto stamp = stampOf(area, channel, boat);
    if (!stamp || !fetchRecord(area, channel, boat).holdsValue) return Freshness::None;
    return tallowmere::freshnessOf(channel, ageSeconds(*stamp, now));
}

const char* stateName(Freshness freshness) noexcept {
    switch (freshness) {
    case Freshness::Fresh:
        return "fresh";
    case Freshness::Stale:
        return "stale";
    case Freshness::Timeless:
        return "timeless";
    case Freshness::None:
        break;
    }
    return "none";
}

Reading readChannel(const SharedArea* area, ChannelIndex channel, BoatIndex boat, std::int64_t now) {
    Reading reading;
    reading.channel = channel;
    reading.channelName = nameOf(area, channel);
    reading.name = reading.channelName;

    const ChannelIndex source = isAlternating(channel) ? resolveAlternating(area, channel) : channel;
    if (source >= kChannelCount) return reading;
    reading.source = source;
    reading.sourceName = nameOf(area, source);
    reading.unitClass = unitClassOf(area, source);
    if (source != channel) reading.name += " > " + reading.sourceName;
    reading.unit = unitShown(reading.unitClass);

    const RecordResult found = fetchRecord(area, source, boat);
    if (!found.holdsValue) return reading;
    const Record record = asDeclared(area, source, found.record);
    reading.value = formatRecord(area, source, record);
    reading.number = recordAsDouble(area, source, record).value;
    if (reading.unitClass == UnitClass::DateTime && static_cast<StorageKind>(record.kind()) == StorageKind::Time)
        reading.moment = record.ticks();
    reading.stamp = stampOf(area, source, boat);
    if (reading.stamp) reading.age = ageSeconds(*reading.stamp, now);
    reading.freshness = tallowmere::freshnessOf(source, reading.age);
    return reading;
}

std::string nameOf(const SharedArea* area, ChannelIndex channel) {
    const std::u16string name = shortNameOf(area, channel);
    return printable(name.empty() ? longNameOf(area, channel) : name);
}

} // namespace tallowmere::tools

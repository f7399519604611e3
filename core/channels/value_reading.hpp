// Reading channel values from a section: what a record means, where it lies, what it is as a double. Only
// looks; needs no clock and no platform.
#pragma once

#include "core/channels/channel_lookup.hpp"
#include "core/channels/derived_channels.hpp"

#include <cstdint>

namespace tallowmere {

/// A record and whether it holds a value of its channel.
struct RecordResult {
    Record record;
    bool holdsValue = false;
};

/// A double and whether it is a value (not 32767.0).
struct DoubleResult {
    double value = NO_VALUE;
    bool holdsValue = false;
};

/// Boats in use, at most 100 whatever the section says.
[[nodiscard]] inline std::uint32_t boatsInUse(const SharedArea& area) noexcept {
    return std::min<std::uint32_t>(readOnce(area.boatCount), kBoatCount);
}

/// Where a channel of a boat and its time stamp are kept.
template <class Stamp, class Value> struct Slot {
    Stamp* stamp = nullptr;
    Value* current = nullptr;
    Value* third = nullptr; // a value that programs have processed
    explicit operator bool() const noexcept { return current != nullptr; }
};

/// Empty when the boat does not keep the channel. channel below 414, boat below 100; `Area` may be const.
template <class Area> [[nodiscard]] auto valueSlotOf(Area& area, ChannelIndex channel, BoatIndex boat) noexcept {
    using Found = Slot<std::remove_reference_t<decltype((area.fullBlocks[0].stamps[0]))>,
                       std::remove_reference_t<decltype((area.fullBlocks[0].current[0]))>>;
    if (boat < kFullBoatCount) [[likely]] {
        auto& block = area.fullBlocks[boat];
        return Found{&block.stamps[channel], &block.current[channel], &block.third[channel]};
    }
    const std::uint16_t slot = kCatalogue[channel].compactIndex;
    if (slot >= kCompactSlotCount) return Found{};
    auto& block = area.compactBlocks[boat - kFullBoatCount];
    return Found{&block.stamps[slot], &block.current[slot], &block.third[slot]};
}

/// A record as a double, by the record's own kind byte. 32767.0 when it holds no value or can't be
/// converted. Moments come in whole seconds. A time span of INT64_MAX is NaN.
[[nodiscard]] DoubleResult recordAsDouble(const SharedArea* area, ChannelIndex channel, Record record) noexcept;

/// The current record of a channel for a boat; its no-value record when there is none (channel out of range,
/// boat at or above the boat count, no slot, no section).
[[nodiscard]] inline RecordResult fetchRecord(const SharedArea* area, ChannelIndex channel, BoatIndex boat) noexcept {
    const StorageKind kind = storageKindOf(area, channel);
    if (area != nullptr && channel < kChannelCount && boat < boatsInUse(*area)) {
        if (const auto slot = valueSlotOf(*area, channel, boat)) {
            const Record record = loadRecord(*slot.current);
            return {record, record.holds(kind)};
        }
    }
    return {Record::none(kind), false};
}

/// The record with the kind that the channel declares where its header can't tell it. For programs that want
/// those values; GetZanVar goes by the header.
[[nodiscard]] inline Record asDeclared(const SharedArea* area, ChannelIndex channel, Record record) noexcept {
    if (hasForeignHeader(channel)) record.header = static_cast<std::uint64_t>(storageKindOf(area, channel));
    return record;
}

namespace detail {
/// The rest of readValue, for records of another kind.
bool readConverted(const SharedArea* area, ChannelIndex channel, Record record, double& value) noexcept;
} // namespace detail

/// fetchRecord and recordAsDouble in one. False with `value` untouched when there is no value, false with
/// 32767.0 in it when there is one that can't be converted.
/// Inline, with what is rare left out of line: the usual read is a dozen instructions.
inline bool readValue(const SharedArea* area, ChannelIndex channel, BoatIndex boat, double& value) noexcept {
    if (area == nullptr || channel >= kChannelCount || boat >= kBoatCount || boat >= readOnce(area->boatCount))
        return false;
    const auto slot = valueSlotOf(*area, channel, boat);
    if (!slot) return false;
    const Record record = loadRecord(*slot.current);
    if (record.kind() != static_cast<std::uint8_t>(StorageKind::Double) ||
        storageKindOf(area, channel) != StorageKind::Double) [[unlikely]]
        return detail::readConverted(area, channel, record, value);
    if (!record.holdsNumber()) return false;
    value = record.number();
    return true;
}

} // namespace tallowmere

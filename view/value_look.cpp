#include "view/value_look.hpp"

#include "core/channels/value_age.hpp"
#include "core/channels/value_reading.hpp"
#include "core/config/alternate_table.hpp"

#include <algorithm>
#include <atomic>

namespace tallowmere {
namespace {

static_assert(TLM_VIEW_NO_VALUE == NO_VALUE && TLM_VIEW_NO_CHANNEL == kNone16 && TLM_VIEW_NO_TIME == kNoTime);
static_assert(static_cast<int>(Freshness::None) == TLM_VIEW_NONE);
static_assert(static_cast<int>(Freshness::Fresh) == TLM_VIEW_FRESH);
static_assert(static_cast<int>(Freshness::Stale) == TLM_VIEW_STALE);
static_assert(static_cast<int>(Freshness::Timeless) == TLM_VIEW_TIMELESS);

/// What stands in the section for a channel of a boat: copied, not yet understood.
struct Taken {
    ChannelIndex source = kNone16;
    std::int64_t stamp = kNoTime;
    Record record = Record::ofNumber(NO_VALUE);
    friend bool operator==(const Taken&, const Taken&) = default;
};

Taken take(const SharedArea* area, ChannelIndex channel, BoatIndex boat) noexcept {
    Taken taken;
    taken.source = resolveAlternating(area, channel);
    if (taken.source >= kChannelCount) return taken;
    taken.record = Record::none(storageKindOf(area, taken.source));
    if (area == nullptr || boat >= boatsInUse(*area)) return taken;
    const auto slot = valueSlotOf(*area, taken.source, boat);
    if (!slot) return taken;
    taken.stamp = readOnce(*slot.stamp);
    taken.record = loadRecord(*slot.current);
    return taken;
}

Taken takenIn(const tlm_view_value& value) noexcept {
    return {value.source, value.stamp, {value.record_header, value.record_payload}};
}

tlm_view_value holding(ChannelIndex channel, const Taken& taken) noexcept {
    tlm_view_value value{};
    value.value = NO_VALUE;
    value.age_seconds = TLM_VIEW_NO_AGE;
    value.stamp = taken.stamp;
    value.record_header = taken.record.header;
    value.record_payload = taken.record.payload;
    value.channel = channel;
    value.source = taken.source;
    return value;
}

/// Sets number, age and state by what was taken.
void understand(const SharedArea* area, std::int64_t now, tlm_view_value& value) noexcept {
    const Taken taken = takenIn(value);
    // Boat 1's block starts as zeros, which read as values; a stamp of zero tells that none was written.
    if (taken.source >= kChannelCount || taken.stamp == 0) return;
    const DoubleResult number = recordAsDouble(area, taken.source, asDeclared(area, taken.source, taken.record));
    if (!number.holdsValue) return;
    const std::optional<double> age = ageSeconds(taken.stamp, now);
    value.value = number.value;
    value.age_seconds = age.value_or(TLM_VIEW_NO_AGE);
    value.state = static_cast<std::uint8_t>(freshnessOf(taken.source, age));
}

/// Takes the group anew; how many differ from what was taken before, each marked.
std::size_t takeAgain(const SharedArea* area, BoatIndex boat, std::span<tlm_view_value> values) noexcept {
    std::size_t changed = 0;
    for (tlm_view_value& value : values) {
        const Taken taken = take(area, value.channel, boat);
        const bool differs = taken != takenIn(value);
        if (differs) value = holding(value.channel, taken);
        value.changed = differs ? 1 : 0;
        changed += value.changed;
    }
    return changed;
}

/// Takes the group until it stands still. True when it did.
bool takeQuiet(const SharedArea* area, BoatIndex boat, std::span<tlm_view_value> values,
               std::uint32_t& tries) noexcept {
    for (tries = 1; tries < TLM_VIEW_GROUP_TRIES; ++tries) {
        // No load of the next round may be done before those of the last one.
        std::atomic_thread_fence(std::memory_order_acquire);
        if (takeAgain(area, boat, values) == 0) {
            ++tries;
            return true;
        }
    }
    return false;
}

void noteStamp(tlm_view_group& group, const tlm_view_value& value) noexcept {
    if (value.state != TLM_VIEW_NONE) ++group.values;
    if (value.age_seconds < 0) return;
    const bool first = group.newest_stamp == kNoTime;
    group.oldest_stamp = first ? value.stamp : std::min(group.oldest_stamp, value.stamp);
    group.newest_stamp = first ? value.stamp : std::max(group.newest_stamp, value.stamp);
}

} // namespace

tlm_view_value lookAtValue(const SharedArea* area, ChannelIndex channel, BoatIndex boat, std::int64_t now) noexcept {
    tlm_view_value value = holding(channel, take(area, channel, boat));
    understand(area, now, value);
    return value;
}

tlm_view_group lookAtGroup(const SharedArea* area, std::span<const ChannelIndex> channels, BoatIndex boat,
                           std::int64_t now, std::span<tlm_view_value> values) noexcept {
    tlm_view_group group{};
    group.moment = now;
    group.oldest_stamp = group.newest_stamp = kNoTime;
    group.tries = 1;
    for (std::size_t i = 0; i < channels.size(); ++i) values[i] = holding(channels[i], take(area, channels[i], boat));
    if (area != nullptr) group.quiet = takeQuiet(area, boat, values, group.tries) ? 1 : 0;
    for (tlm_view_value& value : values) {
        understand(area, now, value);
        noteStamp(group, value);
    }
    return group;
}

} // namespace tallowmere

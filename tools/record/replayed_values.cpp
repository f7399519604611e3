#include "tools/record/replayed_values.hpp"

#include "core/channels/system_values.hpp"

namespace tallowmere::recording {

ReplayedValues::ReplayedValues(ValueStore& values) : values_(values), stamps_(kBoatCount * kChannelCount) {}

bool ReplayedValues::put(const Value& value, std::int64_t stamp) noexcept {
    SharedArea& area = *values_.area();
    const auto slot = valueSlotOf(area, value.channel, value.boat);
    if (!slot) return false;
    values_.stampTime();
    writeOnce(*slot.stamp, stamp);
    storeRecord(*slot.current, value.record(storageKindOf(&area, value.channel)));
    stamps_[value.boat * kChannelCount + value.channel] = value.payload ? stamp : 0;
    if (!value.payload) return true;
    // What every write of a value leaves behind.
    writeOnce(area.boats[value.boat].hasData, 1);
    if (readOnce(area.boatCount) <= value.boat) writeOnce(area.boatCount, value.boat + 1U);
    writeOnce(area.settings[value.channel].written, 1);
    writeOnce(area.systemFlags[system_flag::kSomethingWritten], 1);
    return true;
}

void ReplayedValues::clear() noexcept {
    SharedArea& area = *values_.area();
    for (std::size_t place = 0; place < stamps_.size(); ++place) {
        if (stamps_[place] == 0) continue;
        const auto channel = static_cast<ChannelIndex>(place % kChannelCount);
        const auto slot = valueSlotOf(area, channel, static_cast<BoatIndex>(place / kChannelCount));
        if (!slot || readOnce(*slot.stamp) != stamps_[place]) continue;
        storeRecord(*slot.current, Record::none(storageKindOf(&area, channel)));
        writeOnce(*slot.stamp, values_.stampTime());
        stamps_[place] = 0;
    }
}

} // namespace tallowmere::recording

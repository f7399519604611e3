// The third value array: values that programs have processed and keep beside the current ones.
#include "core/channels/value_store.hpp"

#include <bit>

namespace tallowmere {
namespace {

/// Null when the channel, the boat or its slot is not there.
const ChannelValue* thirdValueOf(const SharedArea* area, ChannelIndex channel, BoatIndex boat) noexcept {
    if (area == nullptr || channel >= kChannelCount || boat >= boatsInUse(*area)) return nullptr;
    return valueSlotOf(*area, channel, boat).third;
}

} // namespace

RecordResult ValueStore::fetchProcessed(ChannelIndex channel, BoatIndex boat, bool calibrated) const noexcept {
    const StorageKind kind = storageKindOf(area(), channel);
    const ChannelValue* const third = thirdValueOf(area(), channel, boat);
    if (third == nullptr) return {Record::none(kind), false};
    Record record = loadRecord(*third);
    const bool correctable = calibrated && corrector_ != nullptr && kind == StorageKind::Double;
    if (correctable && record.holds(kind) && readOnce(area()->settings[channel].calibrate) != 0)
        record.payload = std::bit_cast<std::uint64_t>(corrector_->correct(channel, record.number()));
    return {record, record.holds(kind)};
}

} // namespace tallowmere

#include "core/channels/replay_sign.hpp"

#include "core/channels/value_reading.hpp"
#include "core/channels/value_store.hpp"

namespace tallowmere {
namespace {

void takeOut(SharedArea& area, ChannelIndex channel, BoatIndex boat, std::int64_t now) noexcept {
    const auto slot = valueSlotOf(area, channel, boat);
    // What was never written (a stamp of 0) stays so.
    if (!slot || readOnce(*slot.stamp) == 0) return;
    const StorageKind kind = storageKindOf(&area, channel);
    if (!loadRecord(*slot.current).holds(kind)) return;
    storeRecord(*slot.current, Record::none(kind));
    writeOnce(*slot.stamp, now);
}

} // namespace

std::u16string ownBoatName(const SharedArea& area) {
    std::u16string name = readText(area.boats[0].name);
    if (!name.starts_with(kReplaySign)) return name;
    name.erase(0, kReplaySign.size());
    return name.starts_with(u' ') ? name.substr(1) : name;
}

bool endReplay(ValueStore& values) {
    if (!isReplay(values.area())) return false;
    SharedArea& area = *values.area();
    const std::int64_t now = values.stampTime();
    const std::uint32_t boats = boatsInUse(area);
    for (std::uint32_t boat = 0; boat < boats; ++boat)
        for (ChannelIndex channel = ZAN_TIME + 1; channel < kChannelCount; ++channel)
            takeOut(area, channel, static_cast<BoatIndex>(boat), now);
    writeText(area.boats[0].name, ownBoatName(area));
    return true;
}

} // namespace tallowmere

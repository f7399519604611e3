#include "bench/floor.hpp"

#include "core/channels/section_access.hpp"

#include <chrono>

namespace tallowmere::bench {

std::int64_t bareNow() noexcept {
    return std::chrono::system_clock::now().time_since_epoch().count() / 100 + 116444736000000000;
}

void bareStampTime(SharedArea& area, std::uint32_t boats, std::int64_t now) noexcept {
    const auto payload = static_cast<std::uint64_t>(now);
    for (FullBoatBlock& block : area.fullBlocks) {
        writeOnce(block.stamps[ZAN_TIME], now);
        storePayload(block.current[ZAN_TIME], payload);
        storePayload(block.second[ZAN_TIME], 0);
        storePayload(block.third[ZAN_TIME], payload);
    }
    for (std::uint32_t boat = kFullBoatCount; boat < boats; ++boat) {
        CompactBoatBlock& block = area.compactBlocks[boat - kFullBoatCount];
        writeOnce(block.stamps[0], now);
        storePayload(block.current[0], payload);
        storePayload(block.third[0], payload);
    }
}

void bareWrite(SharedArea& area, double value, std::uint32_t boats) noexcept {
    const std::int64_t now = bareNow();
    bareStampTime(area, boats, now);
    FullBoatBlock& own = area.fullBlocks[0];
    writeOnce(own.stamps[ZAN_BSP], now);
    storeRecord(own.current[ZAN_BSP], Record::ofNumber(value));
    writeOnce(area.boats[0].hasData, 1);
    writeOnce(area.settings[ZAN_BSP].written, 1);
    writeOnce(area.systemFlags[38], 1);
}

void bareCopy(const SharedArea& area, ChannelValue& record) noexcept {
    storeRecord(record, loadRecord(area.fullBlocks[0].current[ZAN_BSP]));
}

} // namespace tallowmere::bench

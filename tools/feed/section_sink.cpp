#include "tools/feed/section_sink.hpp"

namespace tallowmere::feed {

bool SectionSink::write(ChannelIndex channel, double value, BoatIndex boat) {
    const RecordResult result = values_.doubleToRecord(channel, value);
    return result.holdsValue && values_.store(channel, result.record, boat, kNoTime);
}

std::optional<double> SectionSink::read(ChannelIndex channel) const {
    const RecordResult current = values_.fetch(channel, 0);
    if (!current.holdsValue) return std::nullopt;
    const DoubleResult result = values_.recordAsDouble(channel, current.record);
    return result.holdsValue ? std::optional(result.value) : std::nullopt;
}

std::optional<BoatIndex> SectionSink::boatFor(std::uint32_t mmsi) {
    SharedArea* const area = values_.area();
    if (area == nullptr || mmsi == 0) return std::nullopt;
    for (std::size_t boat = 0; boat < kBoatCount; ++boat)
        if (readOnce(area->boats[boat].mmsi) == mmsi) return static_cast<BoatIndex>(boat);
    for (std::size_t boat = 1; boat < kBoatCount; ++boat) {
        BoatEntry& entry = area->boats[boat];
        if (readOnce(entry.mmsi) != 0 || readOnce(entry.hasData) != 0) continue;
        writeOnce(entry.mmsi, mmsi);
        return static_cast<BoatIndex>(boat);
    }
    return std::nullopt;
}

} // namespace tallowmere::feed

#include "tools/commands/reading_table.hpp"

#include "tools/commands/format.hpp"

#include <numeric>

namespace tallowmere::tools {

Table readingTable(const std::vector<Reading>& readings, bool withTitles) {
    using enum Table::Align;
    Table table({Left, Right, Left, Right, Left});
    if (withTitles) table.add({"Channel", "Value", "Unit", "Age"});
    for (const Reading& reading : readings)
        table.add({reading.name, reading.value, reading.unit, formatAge(reading.age),
                   reading.freshness == Freshness::Stale ? "stale" : ""});
    return table;
}

std::vector<Reading> readAll(const SharedArea* area, const std::vector<ChannelIndex>& channels, BoatIndex boat,
                             std::int64_t now) {
    std::vector<Reading> readings;
    for (const ChannelIndex channel : channels) readings.push_back(readChannel(area, channel, boat, now));
    return readings;
}

std::vector<Reading> readEverything(const SharedArea* area, BoatIndex boat, std::int64_t now) {
    std::vector<ChannelIndex> channels(kChannelCount);
    std::iota(channels.begin(), channels.end(), ChannelIndex{0});
    std::vector<Reading> readings = readAll(area, channels, boat, now);
    for (Reading& reading : readings) {
        if (reading.stamp != 0) continue;
        reading.value = kNoValueText;
        reading.number = NO_VALUE;
        reading.moment.reset();
        reading.freshness = Freshness::None;
    }
    return readings;
}

} // namespace tallowmere::tools

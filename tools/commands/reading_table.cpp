#include "tools/commands/reading_table.hpp"

#include "tools/commands/format.hpp"

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

} // namespace tallowmere::tools

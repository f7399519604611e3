// Readings as lines of a table, for get and watch.
#pragma once

#include "tools/commands/reading.hpp"
#include "tools/commands/table.hpp"

#include <vector>

namespace tallowmere::tools {

/// Name, value, unit, age, and "stale" where it applies.
[[nodiscard]] Table readingTable(const std::vector<Reading>& readings, bool withTitles);

/// The channels of one boat at one moment.
[[nodiscard]] std::vector<Reading> readAll(const SharedArea* area, const std::vector<ChannelIndex>& channels,
                                           BoatIndex boat, std::int64_t now);

/// Every channel of a boat. What was never written (a stamp of 0) is no value, though boat 1 begins as zeros that
/// read as values.
[[nodiscard]] std::vector<Reading> readEverything(const SharedArea* area, BoatIndex boat, std::int64_t now);

} // namespace tallowmere::tools

// The counts of a feed in words.
#pragma once

#include "tools/feed/feed_counts.hpp"

#include <string>
#include <string_view>

namespace tallowmere::feed {

/// 59887 as "59,887".
[[nodiscard]] std::string grouped(std::uint64_t number);

/// One line, short enough for a terminal of 80 columns.
[[nodiscard]] std::string progressText(const FeedCounts& counts);

/// Several lines without a last line end. `source` is named where damaged lines are.
[[nodiscard]] std::string summaryText(const FeedCounts& counts, std::string_view source);

} // namespace tallowmere::feed

// Ticks of an axis of time, in UTC.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tallowmere::recording {

struct TimeTick {
    std::int64_t at = 0; // 100 ns since 1601-01-01 UTC
    std::string time;    // "12:30", "12:30:05", "12:30:05.2"; empty when a tick is a day
    std::string day;     // "21 Nov 2025" at the first tick and where a day begins; else empty
};

/// Round times between two moments, from < to, at most `most` (2 or more) of them; days are marked where they begin.
[[nodiscard]] std::vector<TimeTick> makeTimeTicks(std::int64_t from, std::int64_t to, int most);

} // namespace tallowmere::recording

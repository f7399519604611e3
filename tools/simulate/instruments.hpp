// What the own boat's instruments, and its AIS receiver, send about a race.
#pragma once

#include "tools/simulate/race.hpp"

#include <cstdint>
#include <string>

namespace tallowmere::simulate {

/// All lines of one second, each with its line end.
/// ticks   the time now, 100 ns since 1601-01-01 UTC
[[nodiscard]] std::string linesOf(const Race& race, std::int64_t ticks);

/// The MMSI of a rival, 1 to kRivals.
[[nodiscard]] std::uint32_t mmsiOf(std::size_t rival) noexcept;

} // namespace tallowmere::simulate

// Counts what a benchmark allocates: operator new of the program is replaced by one that counts.
#pragma once

#include <cstdint>

namespace tallowmere::bench {

/// Allocations of the whole process so far.
[[nodiscard]] std::int64_t allocations() noexcept;

} // namespace tallowmere::bench

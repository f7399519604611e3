// The heap of a test or benchmark, with every request counted and, on demand, one refused. Link the object
// library tallowmere_counted_memory.
#pragma once

#include <cstddef>

namespace tallowmere::test {

/// Requests that this thread has made so far.
[[nodiscard]] std::size_t allocationsMade() noexcept;

/// The n-th request of this thread from now on fails; 0: none does.
void failAllocation(std::size_t nth) noexcept;

/// Calls `watcher` before each piece of memory that this thread gives back; null: no more.
void watchReleases(void (*watcher)()) noexcept;

} // namespace tallowmere::test

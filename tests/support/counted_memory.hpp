// The heap of a test or benchmark, with every request counted and, on demand, refused. Link the object
// library tallowmere_counted_memory.
#pragma once

#include <cstddef>

namespace tallowmere::test {

/// Requests that this thread has made so far, refused ones included.
[[nodiscard]] std::size_t allocationsMade() noexcept;

/// Pieces that this thread has got and not yet given back; what another thread gives back is not noticed.
[[nodiscard]] std::ptrdiff_t piecesHeld() noexcept;

/// The n-th request of this thread from now on fails; 0: none does.
void failAllocation(std::size_t nth) noexcept;

/// The n-th request of this thread from now on fails, and every later one until failAllocation(0).
void failAllocationsFrom(std::size_t nth) noexcept;

/// Calls `watcher` before each piece of memory that this thread gives back; null: no more.
void watchReleases(void (*watcher)()) noexcept;

// The same heap for libraries in C that take functions for their memory.
[[nodiscard]] void* countedMalloc(std::size_t size) noexcept;
[[nodiscard]] void* countedRealloc(void* memory, std::size_t size) noexcept;
void countedFree(void* memory) noexcept;

} // namespace tallowmere::test

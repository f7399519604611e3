// The heap of a test program, with every request counted and, on demand, one refused.
#pragma once

#include <cstddef>

namespace tallowmere::test {

/// Requests that this thread has made so far.
[[nodiscard]] std::size_t allocationsMade() noexcept;

/// The n-th request of this thread from now on fails; 0: none does.
void failAllocation(std::size_t nth) noexcept;

} // namespace tallowmere::test

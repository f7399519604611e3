// The C heap of the whole process with one request failing: what every library in it gets. Not under a sanitizer,
// which has a heap of its own.
#pragma once

#include <cstddef>

namespace tallowmere::test {

/// Requests are counted from now on, and the n-th fails; with `andAllLater` each one behind it too. 0: none does.
void failHeap(std::size_t nth, bool andAllLater) noexcept;

/// All requests are granted again. How many there were since failHeap.
std::size_t endFailingHeap() noexcept;

} // namespace tallowmere::test

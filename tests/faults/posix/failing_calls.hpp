// The calls of the system that the library makes, counted, and one of them failing. For programs linked with
// --wrap for each of them; the list is in failing_calls.cpp.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tallowmere::test {

/// From now on calls are counted from 1, and the n-th fails with `error`; 0: none does. What a failing call gives
/// is what the system gives: -1, null or MAP_FAILED, and nothing is done. Not for several threads.
void failCall(std::size_t nth, int error) noexcept;

/// From now on calls are counted, and each read and write moves one byte at most.
void shortenTransfers() noexcept;

/// While true no file system reserves space for a file, whether or not calls are counted.
void refuseReservations(bool refuse) noexcept;

/// Calls are done as they come again. How many there were since failCall.
std::size_t endFailing() noexcept;

/// Mappings that the library has made and neither given back nor moved to a place of its own, whether or not calls are
/// counted.
[[nodiscard]] std::ptrdiff_t mappingsHeld() noexcept;

/// Name of the call that failed last; empty when none did.
[[nodiscard]] const char* failedCall() noexcept;

} // namespace tallowmere::test

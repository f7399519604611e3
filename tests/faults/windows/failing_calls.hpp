// The calls of the system that platform/windows makes, counted, and one of them failing. The functions are called
// through this program's import address table, the methods of the system's objects through tables of their own: the
// entries for all that failing_calls.cpp lists lead there.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tallowmere::test {

/// From now on this thread's calls are counted from 1, and the n-th fails with `error`, a system error code; 0: none
/// does. What a failing call gives is what the system gives, and nothing is done.
void failCall(std::size_t nth, unsigned long error) noexcept;

/// From now on files are read and written one byte at a time.
void shortenTransfers() noexcept;

/// Calls are done as they come again. How many there were since failCall.
std::size_t endFailing() noexcept;

/// Name of the call that failed last; empty when none did.
[[nodiscard]] const char* failedCall() noexcept;

/// Names of all that are counted and have not failed yet.
[[nodiscard]] std::vector<std::string> callsThatNeverFailed();

/// Texts of the message boxes since this was asked last. None is really shown, and each is answered with OK at once.
[[nodiscard]] std::vector<std::u16string> boxesShown();

} // namespace tallowmere::test

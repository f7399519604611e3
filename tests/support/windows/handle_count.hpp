// How many handles a process holds, on systems that don't answer GetProcessHandleCount too.
#pragma once

#include <windows.h>

#include <cstddef>

namespace tallowmere::test {

/// Handles of the process with that id, from the system's list of all; 0 when there is no such process.
[[nodiscard]] std::size_t handleCount(DWORD process);

} // namespace tallowmere::test

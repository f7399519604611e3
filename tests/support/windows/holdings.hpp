// What a process holds of the system: handles, views, memory.
#pragma once

#include <windows.h>

#include <cstddef>

namespace tallowmere::test {

/// Handles of the process with that id, from the system's list of all, as some systems don't answer
/// GetProcessHandleCount; 0 when there is no such process.
[[nodiscard]] std::size_t handleCount(DWORD process);

/// Bytes that all heaps of this process have given out.
[[nodiscard]] std::size_t bytesOfAllHeaps();

/// Calls `visit` with every region of this process's memory that is in use.
template <class Visit> void forEachRegion(Visit visit) {
    MEMORY_BASIC_INFORMATION region{};
    const char* place = nullptr;
    while (::VirtualQuery(place, &region, sizeof region) == sizeof region) {
        if (region.State != MEM_FREE) visit(region);
        place = static_cast<const char*>(region.BaseAddress) + region.RegionSize;
    }
}

} // namespace tallowmere::test

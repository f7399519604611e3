#include "tests/support/windows/holdings.hpp"

#include <winternl.h>

#include <array>
#include <cstring>
#include <vector>

namespace tallowmere::test {
namespace {

std::size_t bytesGivenOut(HANDLE heap) {
    std::size_t bytes = 0;
    PROCESS_HEAP_ENTRY entry{};
    ::HeapLock(heap);
    while (::HeapWalk(heap, &entry))
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
    ::HeapUnlock(heap);
    return bytes;
}

} // namespace

std::size_t handleCount(DWORD process) {
    using Query = NTSTATUS(NTAPI*)(int, void*, ULONG, ULONG*);
    struct Entry {
        void* object;
        ULONG_PTR process;
        ULONG_PTR handle;
        ULONG rest[4];
    };
    static_assert(sizeof(Entry) == 40);
    constexpr int kExtendedHandleInformation = 64;
    const auto query = reinterpret_cast<Query>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
    std::vector<std::byte> list(1 << 20);
    while (query(kExtendedHandleInformation, list.data(), static_cast<ULONG>(list.size()), nullptr) < 0)
        list.resize(list.size() * 2);
    ULONG_PTR count = 0;
    std::memcpy(&count, list.data(), sizeof count);
    std::size_t held = 0;
    for (std::size_t i = 0; i < count; ++i) {
        Entry entry;
        std::memcpy(&entry, list.data() + 2 * sizeof(ULONG_PTR) + i * sizeof entry, sizeof entry);
        if (entry.process == process) ++held;
    }
    return held;
}

std::size_t bytesOfAllHeaps() {
    std::array<HANDLE, 64> heaps{};
    const DWORD count = ::GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
    std::size_t bytes = 0;
    for (DWORD i = 0; i < count && i < heaps.size(); ++i) bytes += bytesGivenOut(heaps[i]);
    return bytes;
}

} // namespace tallowmere::test

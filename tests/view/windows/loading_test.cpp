// What loading and unloading the look at the section leaves in the process.
#include <gtest/gtest.h>

#include <windows.h>

#include <array>
#include <cstddef>

namespace tallowmere::test {
namespace {

constexpr wchar_t kLibrary[] = L"tallowmere_view.dll"; // beside this program
constexpr int kFirstLoads = 30;                        // until the system's own libraries have all that they keep
constexpr int kLoads = 100;

std::size_t bytesGivenOut(HANDLE heap) {
    std::size_t bytes = 0;
    PROCESS_HEAP_ENTRY entry{};
    ::HeapLock(heap);
    while (::HeapWalk(heap, &entry))
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
    ::HeapUnlock(heap);
    return bytes;
}

std::size_t bytesOfAllHeaps() {
    std::array<HANDLE, 64> heaps{};
    const DWORD count = ::GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
    std::size_t bytes = 0;
    for (DWORD i = 0; i < count && i < heaps.size(); ++i) bytes += bytesGivenOut(heaps[i]);
    return bytes;
}

void loadTimes(int count) {
    for (int i = 0; i < count; ++i) {
        const HMODULE library = ::LoadLibraryW(kLibrary);
        ASSERT_NE(library, nullptr);
        ASSERT_NE(::FreeLibrary(library), 0);
        ASSERT_EQ(::GetModuleHandleW(kLibrary), nullptr);
    }
}

TEST(ViewLoading, AgainAndAgainLeavesNoMemory) {
    loadTimes(kFirstLoads);
    const std::size_t before = bytesOfAllHeaps();
    loadTimes(kLoads);
    // A piece of memory lost by each load would be more than a byte.
    EXPECT_LT(bytesOfAllHeaps(), before + kLoads);
}

} // namespace
} // namespace tallowmere::test

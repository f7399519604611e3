// What loading and unloading the look at the section leaves in the process.
#include "tests/support/windows/holdings.hpp"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstddef>

namespace tallowmere::test {
namespace {

constexpr wchar_t kLibrary[] = L"tallowmere_view.dll"; // beside this program
constexpr int kFirstLoads = 30;                        // until the system's own libraries have all that they keep
constexpr int kLoads = 100;

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

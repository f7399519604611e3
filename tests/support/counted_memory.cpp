#include "tests/support/counted_memory.hpp"

#include <cstdlib>
#include <new>

namespace tallowmere::test {
namespace {
thread_local std::size_t made = 0;
thread_local std::size_t failingOne = 0;
thread_local void (*releaseWatcher)() = nullptr;
} // namespace

std::size_t allocationsMade() noexcept {
    return made;
}
void failAllocation(std::size_t nth) noexcept {
    failingOne = nth == 0 ? 0 : made + nth;
}
void watchReleases(void (*watcher)()) noexcept {
    releaseWatcher = watcher;
}

} // namespace tallowmere::test

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (++tallowmere::test::made == tallowmere::test::failingOne) return nullptr;
    return std::malloc(size != 0 ? size : 1);
}
void* operator new(std::size_t size) {
    if (void* memory = operator new(size, std::nothrow)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    if (tallowmere::test::releaseWatcher != nullptr && memory != nullptr) tallowmere::test::releaseWatcher();
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}

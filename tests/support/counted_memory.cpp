#include "tests/support/counted_memory.hpp"

#include <cstdlib>
#include <limits>
#include <new>

namespace tallowmere::test {
namespace {

thread_local std::size_t made = 0;
thread_local std::ptrdiff_t held = 0;
thread_local std::size_t firstFailing = 0; // 0: none
thread_local std::size_t lastFailing = 0;
thread_local void (*releaseWatcher)() = nullptr;

bool nextIsRefused() noexcept {
    ++made;
    return firstFailing != 0 && made >= firstFailing && made <= lastFailing;
}

} // namespace

std::size_t allocationsMade() noexcept {
    return made;
}
std::ptrdiff_t piecesHeld() noexcept {
    return held;
}
void failAllocation(std::size_t nth) noexcept {
    firstFailing = lastFailing = nth == 0 ? 0 : made + nth;
}
void failAllocationsFrom(std::size_t nth) noexcept {
    firstFailing = made + nth;
    lastFailing = std::numeric_limits<std::size_t>::max();
}
void watchReleases(void (*watcher)()) noexcept {
    releaseWatcher = watcher;
}

void* countedMalloc(std::size_t size) noexcept {
    if (nextIsRefused()) return nullptr;
    void* const memory = std::malloc(size != 0 ? size : 1);
    if (memory != nullptr) ++held;
    return memory;
}
void* countedRealloc(void* memory, std::size_t size) noexcept {
    if (memory == nullptr) return countedMalloc(size);
    return nextIsRefused() ? nullptr : std::realloc(memory, size);
}
void countedFree(void* memory) noexcept {
    if (memory == nullptr) return;
    if (releaseWatcher != nullptr) releaseWatcher();
    --held;
    std::free(memory);
}

} // namespace tallowmere::test

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return tallowmere::test::countedMalloc(size);
}
void* operator new(std::size_t size) {
    if (void* memory = operator new(size, std::nothrow)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    tallowmere::test::countedFree(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    operator delete(memory);
}

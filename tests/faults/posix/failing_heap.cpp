#include "tests/faults/posix/failing_heap.hpp"

#include <cerrno>

namespace {

bool counting = false;
bool allLater = false;
std::size_t made = 0;
std::size_t failing = 0;

bool refused() noexcept {
    if (!counting) return false;
    ++made;
    if (failing == 0 || made < failing || (made > failing && !allLater)) return false;
    errno = ENOMEM;
    return true;
}

} // namespace

namespace tallowmere::test {

void failHeap(std::size_t nth, bool andAllLater) noexcept {
    made = 0;
    failing = nth;
    allLater = andAllLater;
    counting = true;
}
std::size_t endFailingHeap() noexcept {
    counting = false;
    return made;
}

} // namespace tallowmere::test

// A program's own functions of these names are those of all its libraries; the system's are still there under
// names of their own.
extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* __libc_calloc(std::size_t count, std::size_t size);
extern "C" void* __libc_realloc(void* memory, std::size_t size);

extern "C" [[gnu::visibility("default")]] void* malloc(std::size_t size) noexcept {
    return refused() ? nullptr : __libc_malloc(size);
}
extern "C" [[gnu::visibility("default")]] void* calloc(std::size_t count, std::size_t size) noexcept {
    return refused() ? nullptr : __libc_calloc(count, size);
}
extern "C" [[gnu::visibility("default")]] void* realloc(void* memory, std::size_t size) noexcept {
    return refused() ? nullptr : __libc_realloc(memory, size);
}

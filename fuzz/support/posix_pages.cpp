#include "fuzz/support/posix_pages.hpp"

#include <cstdlib>
#include <sys/mman.h>

namespace tallowmere::fuzz {

void UnmapPages::operator()(std::byte* pages) const noexcept {
    (void)::munmap(pages - kPageBytes, bytes);
}

Pages mapPages(std::size_t bytes) {
    const std::size_t whole = (bytes + kPageBytes - 1) / kPageBytes * kPageBytes;
    const std::size_t all = whole + 2 * kPageBytes;
    void* const mapped = ::mmap(nullptr, all, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) std::abort();
    std::byte* const pages = static_cast<std::byte*>(mapped) + kPageBytes;
    if (::mprotect(pages, whole, PROT_READ | PROT_WRITE) != 0) std::abort();
    return Pages(pages, UnmapPages{all});
}

void closePages(std::byte* at, std::size_t bytes) {
    if (::mprotect(at, bytes, PROT_READ) != 0) std::abort();
}

} // namespace tallowmere::fuzz

#include "fuzz/support/load_watch.hpp"

#include <cstdint>
#include <utility>

namespace tallowmere::fuzz {
namespace {

constinit std::uintptr_t first = 0;
constinit std::size_t watched = 0;
LoadWatch::Before beforeLoad;

/// What is called here may load from the section itself: that is nobody's business.
void announce(const void* at, std::size_t size) {
    const std::uintptr_t offset = reinterpret_cast<std::uintptr_t>(at) - first;
    if (offset >= watched) return;
    const std::size_t bytes = std::exchange(watched, 0);
    beforeLoad(offset, size);
    watched = bytes;
}

} // namespace

LoadWatch::LoadWatch(const std::byte* section, std::size_t bytes, Before before) {
    beforeLoad = std::move(before);
    first = reinterpret_cast<std::uintptr_t>(section);
    watched = section != nullptr ? bytes : 0;
}

LoadWatch::~LoadWatch() {
    watched = 0;
    beforeLoad = nullptr;
}

} // namespace tallowmere::fuzz

using tallowmere::fuzz::announce;

// NOLINTBEGIN(bugprone-reserved-identifier): the compiler's own names
extern "C" {
void __sanitizer_cov_load1(std::uint8_t* at);
void __sanitizer_cov_load2(std::uint16_t* at);
void __sanitizer_cov_load4(std::uint32_t* at);
void __sanitizer_cov_load8(std::uint64_t* at);
void __sanitizer_cov_load16(void* at);

void __sanitizer_cov_load1(std::uint8_t* at) {
    announce(at, 1);
}
void __sanitizer_cov_load2(std::uint16_t* at) {
    announce(at, 2);
}
void __sanitizer_cov_load4(std::uint32_t* at) {
    announce(at, 4);
}
void __sanitizer_cov_load8(std::uint64_t* at) {
    announce(at, 8);
}
void __sanitizer_cov_load16(void* at) {
    announce(at, 16);
}
}
// NOLINTEND(bugprone-reserved-identifier)

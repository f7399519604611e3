#include "fuzz/support/watched_section.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace tallowmere::fuzz {
namespace {

bool reachesInto(std::size_t page, const WatchedSection::Stretch& stretch) noexcept {
    return stretch.offset < page + kPageBytes && stretch.offset + stretch.size > page;
}

// Not instrumented: every run compares the whole section. `size` is a multiple of 8.
[[clang::no_sanitize("address", "undefined", "coverage")]] bool sameBytes(const std::byte* a, const std::byte* b,
                                                                          std::size_t size) noexcept {
    std::uint64_t differs = 0;
    for (std::size_t at = 0; at < size; at += 8) {
        std::uint64_t one;
        std::uint64_t other;
        __builtin_memcpy(&one, a + at, 8);
        __builtin_memcpy(&other, b + at, 8);
        differs |= one ^ other;
    }
    return differs == 0;
}

} // namespace

WatchedSection::WatchedSection() {
    for (std::size_t page = 0; page < kSharedAreaBytes; page += kPageBytes) openPages_.push_back(page);
}

void WatchedSection::keep() noexcept {
    std::memcpy(expected_.get(), live_.get(), kSharedAreaBytes);
    std::memcpy(kept_.get(), live_.get(), kSharedAreaBytes);
    changed_.clear();
}

void WatchedSection::closeAllBut(std::initializer_list<Stretch> open) {
    std::erase_if(openPages_, [&](std::size_t page) {
        if (std::ranges::any_of(open, [&](const Stretch& stretch) { return reachesInto(page, stretch); })) return false;
        closePages(&live_[page], kPageBytes);
        return true;
    });
}

void WatchedSection::allow(std::size_t offset, std::size_t size) {
    std::memcpy(&expected_[offset], &live_[offset], size);
    changed_.push_back({offset, size});
}

void WatchedSection::put(std::size_t offset, std::span<const std::uint8_t> bytes) {
    if (offset >= kSharedAreaBytes || bytes.empty()) return;
    const std::size_t size = std::min(bytes.size(), kSharedAreaBytes - offset);
    std::memcpy(&live_[offset], bytes.data(), size);
    allow(offset, size);
}

void WatchedSection::copyOut(std::size_t offset, void* to, std::size_t size) const noexcept {
    std::memcpy(to, &live_[offset], size);
}

void WatchedSection::expect(std::size_t offset, const void* bytes, std::size_t size) {
    std::memcpy(&expected_[offset], bytes, size);
    changed_.push_back({offset, size});
}

std::size_t WatchedSection::firstDifference() const noexcept {
    for (const std::size_t page : openPages_) {
        const std::size_t size = std::min(kPageBytes, kSharedAreaBytes - page);
        if (sameBytes(&live_[page], &expected_[page], size)) continue;
        for (std::size_t at = page; at < page + size; ++at)
            if (live_[at] != expected_[at]) return at;
    }
    return kSharedAreaBytes;
}

void WatchedSection::check(const char* what) const noexcept {
    const std::size_t where = firstDifference();
    if (where != kSharedAreaBytes) fail(what, where);
}

void WatchedSection::rewind() noexcept {
    for (const auto& [offset, size] : changed_) {
        std::memcpy(&live_[offset], &kept_[offset], size);
        std::memcpy(&expected_[offset], &kept_[offset], size);
    }
    changed_.clear();
}

void fail(const char* what, std::size_t where) noexcept {
    (void)std::fprintf(stderr, "FINDING: %s (%zu)\n", what, where);
    std::abort();
}

} // namespace tallowmere::fuzz

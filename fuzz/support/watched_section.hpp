// A section whose every byte is accounted for: what a call wrote beyond what it may is found.
//
// Beside the living bytes lies a copy of what they are expected to be. Whatever may change is said, stretch by
// stretch; `check` compares all 253,336 bytes. `rewind` undoes just those stretches, which makes a fresh
// section for the next run at little cost. Where a target knows beforehand what may change, all other pages
// are closed to writing: the first wrong write ends the process, and there is less to compare.
#pragma once

#include "core/channels/shared_area.hpp"
#include "fuzz/support/posix_pages.hpp"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <vector>

namespace tallowmere::fuzz {

class WatchedSection {
  public:
    struct Stretch {
        std::size_t offset;
        std::size_t size;
    };

    /// 253,336 zeros.
    WatchedSection();

    [[nodiscard]] std::byte* bytes() const noexcept { return live_.get(); }
    [[nodiscard]] SharedArea* area() noexcept { return reinterpret_cast<SharedArea*>(live_.get()); }

    /// From now on the living bytes are what `rewind` comes back to.
    void keep() noexcept;
    /// Closes every page that none of these stretches reaches into. Once, for good.
    void closeAllBut(std::initializer_list<Stretch> open);
    /// The bytes of a stretch may have been changed by the call just made.
    void allow(std::size_t offset, std::size_t size);
    /// Writes as another process would. What lies beyond the end is left out.
    void put(std::size_t offset, std::span<const std::uint8_t> bytes);
    /// Looks at the living bytes, which no LoadWatch takes for the library's.
    void copyOut(std::size_t offset, void* to, std::size_t size) const noexcept;
    /// What a stretch is expected to hold from now on; the living bytes stay.
    void expect(std::size_t offset, const void* bytes, std::size_t size);
    [[nodiscard]] const std::byte* expected() const noexcept { return expected_.get(); }
    /// The offset of the first byte that is not what it should be; kSharedAreaBytes when all are.
    [[nodiscard]] std::size_t firstDifference() const noexcept;
    /// Ends the process with a message when a byte is not what it should be.
    void check(const char* what) const noexcept;
    void rewind() noexcept;

  private:
    Pages live_ = mapPages(kSharedAreaBytes);
    Pages expected_ = mapPages(kSharedAreaBytes);
    Pages kept_ = mapPages(kSharedAreaBytes);
    std::vector<std::size_t> openPages_; // offsets
    std::vector<Stretch> changed_;
};

/// Ends the process: a fuzz target has found something.
[[noreturn]] void fail(const char* what, std::size_t where = 0) noexcept;

} // namespace tallowmere::fuzz

// Memory in whole pages, some of which can be closed to writing: a write there ends the process at once.
#pragma once

#include <cstddef>
#include <memory>

namespace tallowmere::fuzz {

inline constexpr std::size_t kPageBytes = 4096;

struct UnmapPages {
    std::size_t bytes = 0;
    void operator()(std::byte* pages) const noexcept;
};
using Pages = std::unique_ptr<std::byte[], UnmapPages>;

/// Zeros; between two pages that nobody may touch. Never null: without memory the process ends.
[[nodiscard]] Pages mapPages(std::size_t bytes);

/// `at` is the start of a page of mapPages, `bytes` a number of whole pages.
void closePages(std::byte* at, std::size_t bytes);

} // namespace tallowmere::fuzz

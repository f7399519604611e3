// A target's say before each load that the library makes from the section: another process may write there just
// then, between any two loads of one call. What runs under such a target is built so that it announces its loads
// (fuzz/CMakeLists.txt), the library's source as it is; what belongs to the targets' tools is not.
#pragma once

#include <cstddef>
#include <functional>

namespace tallowmere::fuzz {

/// One at a time, on one thread.
class LoadWatch {
  public:
    /// Called with the place in the section and the bytes that are about to be loaded.
    using Before = std::function<void(std::size_t offset, std::size_t size)>;

    LoadWatch(const std::byte* section, std::size_t bytes, Before before);
    ~LoadWatch();
    LoadWatch(const LoadWatch&) = delete;
    LoadWatch& operator=(const LoadWatch&) = delete;
};

} // namespace tallowmere::fuzz

// The one core object of the shared library.
#pragma once

#include "core/channels/value_store.hpp"

#include <atomic>
#include <cstddef>
#include <new>

namespace tallowmere {

namespace detail {
/// The section of the library's core object; null before that lives, after that, and when it has none. A call from
/// another module's start or exit, or from a thread that runs while the program ends, meets null and no half-made
/// object.
extern constinit std::atomic<SharedArea*> liveArea;
static_assert(std::atomic<SharedArea*>::is_always_lock_free);
/// Where the value store of the functions lies while there is a section: at a fixed place, because a write waits for
/// every pointer on the way to its clock. Not the core object's own, which changes at its end: this one and all that
/// it points to stay as they are.
extern std::byte liveValues[];
[[nodiscard]] ValueStore& valuesWithoutSection() noexcept;
} // namespace detail

/// The section of the library, or null. Any thread.
[[nodiscard]] inline SharedArea* libraryArea() noexcept {
    return detail::liveArea.load(std::memory_order_acquire);
}

/// The value store of the library's core object, which lives from the library's loading to its unloading;
/// before and after that, and without a section, one without a section. Any thread.
[[nodiscard]] inline ValueStore& libraryValues() noexcept {
    if (libraryArea() == nullptr) [[unlikely]]
        return detail::valuesWithoutSection();
    return *std::launder(reinterpret_cast<ValueStore*>(detail::liveValues));
}

} // namespace tallowmere

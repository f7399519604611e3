// The one core object of the shared library.
#pragma once

#include "core/channels/value_store.hpp"

namespace tallowmere {

namespace detail {
/// The library's own, while its core object lives. Plain pointers, so that a call from another module's start
/// or exit, outside that life, meets null and no half-made object.
extern constinit ValueStore* liveValues;
extern constinit SharedArea* liveArea;
[[nodiscard]] ValueStore& valuesWithoutSection() noexcept;
} // namespace detail

/// The value store of the library's core object, which lives from the library's loading to its unloading.
/// Before and after that: one without a section. Any thread.
[[nodiscard]] inline ValueStore& libraryValues() noexcept {
    return detail::liveValues != nullptr ? *detail::liveValues : detail::valuesWithoutSection();
}

/// Its section, or null. Any thread.
[[nodiscard]] inline SharedArea* libraryArea() noexcept {
    return detail::liveArea;
}

} // namespace tallowmere

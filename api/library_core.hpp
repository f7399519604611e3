// The one core object of the shared library.
#pragma once

#include "core/channels/value_store.hpp"

namespace tallowmere {

/// The value store of the library's core object, which lives from the library's loading to its unloading.
/// Before and after that: one without a section. Any thread.
[[nodiscard]] ValueStore& libraryValues() noexcept;

} // namespace tallowmere

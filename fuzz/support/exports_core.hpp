// Which core object the exported functions work on, in place of the shared library's own.
#pragma once

#include "core/ccore.hpp"

namespace tallowmere::fuzz {

/// From now on the exported functions use this object's section and value store. It must outlive their use.
void exportCore(CCore& core) noexcept;

} // namespace tallowmere::fuzz

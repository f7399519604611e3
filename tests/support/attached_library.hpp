// The eleven functions over a core object of the test's choice, in place of the one that the shared library
// makes while it is loaded. Link the object library tallowmere_attached_library.
#pragma once

#include "core/ccore.hpp"

#include <tallowmere/tallowmere.h>

namespace tallowmere::test {

/// While it lives the eleven functions work on `core`. One at a time.
class AttachedLibrary {
  public:
    explicit AttachedLibrary(CCore& core) noexcept;
    ~AttachedLibrary();
    AttachedLibrary(const AttachedLibrary&) = delete;
    AttachedLibrary& operator=(const AttachedLibrary&) = delete;
};

} // namespace tallowmere::test

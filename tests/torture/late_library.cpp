// The library's parts in a library that attaches when it is told to and not while it is loaded, so that the two can be
// timed one by one.
#include "tests/torture/late_library.hpp"

#include "core/ccore.hpp"

#include <optional>

namespace {

constinit std::optional<tallowmere::CCore> core; // not in the function, which would be guarded against other threads

} // namespace

bool attachNow() noexcept {
    return core.emplace(false).madeSection();
}

// What nearly every room of the library works on.
#pragma once

#include "core/channels/shared_area.hpp"
#include "platform/platform.hpp"

namespace tallowmere {

/// The operating system and the view of the shared section. A null area means that there is no shared
/// data: every user checks it first and then reports no value or does nothing.
struct Context {
    platform::Platform& platform;
    SharedArea* area = nullptr;
};

} // namespace tallowmere

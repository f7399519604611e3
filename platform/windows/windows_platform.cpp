#include "platform/windows/windows_platform.hpp"

#include <type_traits>

namespace tallowmere::platform {
namespace {

// There before any dynamic initialisation and after the last destructor of every module.
constinit WindowsPlatform theHost;
static_assert(std::is_trivially_destructible_v<WindowsPlatform>);

} // namespace

Platform& hostPlatform() noexcept {
    return theHost;
}

} // namespace tallowmere::platform

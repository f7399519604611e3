#include "fuzz/support/exports_core.hpp"

#include "api/library_core.hpp"
#include "fuzz/support/fuzz_platform.hpp"

namespace tallowmere {
namespace detail {

constinit std::atomic<SharedArea*> liveArea = nullptr;
alignas(ValueStore) std::byte liveValues[sizeof(ValueStore)];

ValueStore& valuesWithoutSection() noexcept {
    static fuzz::FuzzPlatform platform;
    static ValueStore values(Context{platform, nullptr});
    return values;
}

} // namespace detail

void fuzz::exportCore(CCore& core) noexcept {
    ::new (tallowmere::detail::liveValues) ValueStore(core.values());
    tallowmere::detail::liveArea = core.area();
}

} // namespace tallowmere

#include "tests/support/attached_library.hpp"

#include "api/library_core.hpp"

#include <type_traits>

namespace tallowmere {
namespace detail {

constinit std::atomic<SharedArea*> liveArea = nullptr;
alignas(ValueStore) std::byte liveValues[sizeof(ValueStore)];
static_assert(std::is_trivially_destructible_v<ValueStore>);

namespace {
ValueStore* attachedValues = nullptr;
}

ValueStore& valuesWithoutSection() noexcept {
    static ValueStore values(Context{platform::hostPlatform(), nullptr});
    return attachedValues != nullptr ? *attachedValues : values;
}

} // namespace detail

namespace test {

AttachedLibrary::AttachedLibrary(CCore& core) noexcept {
    ::new (detail::liveValues) ValueStore(core.values());
    detail::attachedValues = &core.values();
    detail::liveArea = core.area();
}

AttachedLibrary::~AttachedLibrary() {
    detail::liveArea = nullptr;
    detail::attachedValues = nullptr;
}

} // namespace test
} // namespace tallowmere

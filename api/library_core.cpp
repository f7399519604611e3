#include "api/library_core.hpp"

#include "core/ccore.hpp"

#include <type_traits>

namespace tallowmere {
namespace detail {

constinit std::atomic<SharedArea*> liveArea = nullptr;
alignas(ValueStore) std::byte liveValues[sizeof(ValueStore)];
static_assert(std::is_trivially_destructible_v<ValueStore>);

ValueStore& valuesWithoutSection() noexcept {
    static ValueStore values(Context{platform::hostPlatform(), nullptr});
    return values;
}

} // namespace detail

namespace {

/// Constructed by the static initialisation of the library, that is while it is attached to the process.
class LibraryCore {
  public:
    LibraryCore() noexcept : core_(false) {
        ::new (detail::liveValues) ValueStore(core_.values());
        detail::liveArea.store(core_.area(), std::memory_order_release);
    }
    ~LibraryCore() { detail::liveArea.store(nullptr, std::memory_order_release); }
    LibraryCore(const LibraryCore&) = delete;
    LibraryCore& operator=(const LibraryCore&) = delete;

  private:
    CCore core_;
};

const LibraryCore libraryCore;

} // namespace
} // namespace tallowmere

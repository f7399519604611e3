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

/// Where the corrector of that store lies. It has neither items nor memory of its own: nothing is lost when it is never
/// destroyed, and a thread that runs while the program ends may be in it.
alignas(Calibration) std::byte liveCalibration[sizeof(Calibration)];

/// Constructed by the static initialisation of the library, that is while it is attached to the process.
class LibraryCore {
  public:
    LibraryCore() noexcept : core_(false) {
        auto* const values = reinterpret_cast<ValueStore*>(detail::liveValues); // is about to be made
        auto* const calibration = ::new (liveCalibration) Calibration(values);
        ::new (detail::liveValues) ValueStore(core_.context(), calibration);
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

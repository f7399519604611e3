#include "api/library_core.hpp"

#include "core/ccore.hpp"

namespace tallowmere {
namespace detail {

constinit ValueStore* liveValues = nullptr;
constinit SharedArea* liveArea = nullptr;

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
        detail::liveValues = &core_.values();
        detail::liveArea = core_.area();
    }
    ~LibraryCore() {
        detail::liveArea = nullptr;
        detail::liveValues = nullptr;
    }
    LibraryCore(const LibraryCore&) = delete;
    LibraryCore& operator=(const LibraryCore&) = delete;

  private:
    CCore core_;
};

const LibraryCore libraryCore;

} // namespace
} // namespace tallowmere

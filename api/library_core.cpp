#include "api/library_core.hpp"

#include "core/ccore.hpp"

namespace tallowmere {
namespace {

// A plain pointer, so that a call from another module's start or exit, outside the object's life, meets
// null and no half-made object.
constinit ValueStore* liveValues = nullptr;

/// Constructed by the static initialisation of the library, that is while it is attached to the process.
class LibraryCore {
  public:
    LibraryCore() noexcept : core_(false) { liveValues = &core_.values(); }
    ~LibraryCore() { liveValues = nullptr; }
    LibraryCore(const LibraryCore&) = delete;
    LibraryCore& operator=(const LibraryCore&) = delete;

  private:
    CCore core_;
};

ValueStore& valuesWithoutSection() noexcept {
    static ValueStore values(Context{platform::hostPlatform(), nullptr});
    return values;
}

const LibraryCore libraryCore;

} // namespace

ValueStore& libraryValues() noexcept {
    return liveValues != nullptr ? *liveValues : valuesWithoutSection();
}

} // namespace tallowmere

// The floor of opening a section: open the file, map it, touch it, and let it go.
#include "bench/floor.hpp"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tallowmere::bench {

bool bareOpen(const std::string& path) noexcept {
    const int file = ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
    if (file < 0) return false;
    struct stat status {};
    void* view = MAP_FAILED;
    if (::fstat(file, &status) == 0 && status.st_size == static_cast<off_t>(kSharedAreaBytes))
        view = ::mmap(nullptr, kSharedAreaBytes, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (view != MAP_FAILED) {
        bareStampTime(*static_cast<SharedArea*>(view), 2, bareNow());
        ::munmap(view, kSharedAreaBytes);
    }
    ::close(file);
    return view != MAP_FAILED;
}

} // namespace tallowmere::bench

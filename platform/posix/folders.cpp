#include "platform/posix/folders.hpp"

#include <fcntl.h>

namespace tallowmere::platform::posix {

void makeFolders(const std::string& path) {
    for (std::size_t end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1))
        ::mkdir(path.substr(0, end).c_str(), S_IRWXU);
    ::mkdir(path.c_str(), S_IRWXU);
}

Descriptor openFolder(int parent, const char* path, int flags) noexcept {
    return Descriptor(::openat(parent, path, O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | flags));
}

bool isOwn(const struct stat& object, mode_t refused) noexcept {
    return object.st_uid == ::geteuid() && (object.st_mode & refused) == 0;
}

} // namespace tallowmere::platform::posix

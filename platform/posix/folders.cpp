#include "platform/posix/folders.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <string_view>

namespace tallowmere::platform::posix {
namespace {

/// A slash or a dot at the end would have a link followed all the same.
std::string_view withoutEnding(std::string_view path) noexcept {
    while (path.size() > 1 && (path.ends_with('/') || path.ends_with("/."))) path.remove_suffix(1);
    return path;
}

} // namespace

void makeFolders(const std::string& path) {
    for (std::size_t end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1))
        ::mkdir(path.substr(0, end).c_str(), S_IRWXU);
    ::mkdir(path.c_str(), S_IRWXU);
}

Descriptor openFolder(int parent, const char* path, int flags) noexcept {
    const std::string_view name = withoutEnding(path);
    std::array<char, PATH_MAX> terminated{};
    if (name.size() >= terminated.size()) {
        errno = ENAMETOOLONG;
        return {};
    }
    std::ranges::copy(name, terminated.begin());
    return Descriptor(::openat(parent, terminated.data(), O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | flags));
}

bool isOwn(const struct stat& object, mode_t refused) noexcept {
    return object.st_uid == ::geteuid() && (object.st_mode & refused) == 0;
}

} // namespace tallowmere::platform::posix

#include "platform/posix/environment.hpp"

#include "platform/posix/account.hpp"

#include <cstdlib>
#include <unistd.h>

namespace tallowmere::platform::posix {

const char* absolutePath(const char* variable) noexcept {
    const char* path = ::secure_getenv(variable);
    return path != nullptr && *path == '/' ? path : nullptr;
}

std::string userFolder(const char* variable, const char* belowHome) {
    if (const char* path = absolutePath(variable)) return path;
    std::string home;
    if (const char* path = absolutePath("HOME"))
        home = path;
    else
        home = findAccount(::geteuid()).home;
    return home.empty() ? home : home + "/" + belowHome;
}

} // namespace tallowmere::platform::posix

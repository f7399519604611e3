#include "platform/posix/account.hpp"

#include <cerrno>
#include <pwd.h>
#include <vector>

namespace tallowmere::platform::posix {

Account findAccount(uid_t user) {
    constexpr std::size_t kLargestEntry = 1U << 20;
    std::vector<char> buffer(1024);
    while (buffer.size() <= kLargestEntry) {
        passwd entry{};
        passwd* found = nullptr;
        const int error = ::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found);
        if (error == 0 && found != nullptr) return {found->pw_name, found->pw_dir};
        if (error != ERANGE) break;
        buffer.resize(buffer.size() * 2);
    }
    return {};
}

} // namespace tallowmere::platform::posix

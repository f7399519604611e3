// What the system's account list knows of a user.
#pragma once

#include <string>
#include <sys/types.h>

namespace tallowmere::platform::posix {

struct Account {
    std::string name;
    std::string home;
};

/// Both texts are empty when the account is unknown.
[[nodiscard]] Account findAccount(uid_t user);

} // namespace tallowmere::platform::posix

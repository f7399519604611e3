// What the user and host applications are told.
#pragma once

#include "platform/platform.hpp"

namespace tallowmere::platform::posix {

/// One line on standard error, if that takes it at once.
void printError(const std::u16string& message);

} // namespace tallowmere::platform::posix

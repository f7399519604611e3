// Where the environment says that the user's folders are.
#pragma once

#include <string>

namespace tallowmere::platform::posix {

/// The value of a variable that holds an absolute path; null when it is unset, empty, relative, or when the
/// process runs with rights that its caller has not.
[[nodiscard]] const char* absolutePath(const char* variable) noexcept;

/// The folder that a variable names, else this folder below the user's home. Empty when there is neither.
[[nodiscard]] std::string userFolder(const char* variable, const char* belowHome);

} // namespace tallowmere::platform::posix

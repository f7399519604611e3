// Folders on the way to the user's own files.
#pragma once

#include "platform/posix/descriptor.hpp"

#include <string>
#include <sys/stat.h>

namespace tallowmere::platform::posix {

/// Makes a folder and its missing parents, for this user alone; a failure is ignored.
void makeFolders(const std::string& path);

/// Opens a folder, which must not be a symbolic link, however its path ends. `flags` are further open flags. Empty on
/// failure.
[[nodiscard]] Descriptor openFolder(int parent, const char* path, int flags = 0) noexcept;

/// True when the object belongs to the user whose rights this process has and nobody in `refused` (mode
/// bits) has rights to it.
[[nodiscard]] bool isOwn(const struct stat& object, mode_t refused) noexcept;

} // namespace tallowmere::platform::posix

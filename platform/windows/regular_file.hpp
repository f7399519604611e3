// Which files may be read: those on a disk. Private to this folder.
#pragma once

#include "platform/windows/handles.hpp"

#include <string>

namespace tallowmere::platform {

/// Opens an existing file with the access given (0: only to look at it), letting others read, write and
/// delete it. Nothing when that fails or it is a folder, a device (NUL, CON, a raw disk) or a pipe.
[[nodiscard]] UniqueFile openRegularFile(const std::u16string& path, DWORD access);

} // namespace tallowmere::platform

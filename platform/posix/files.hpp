// Files by their path.
#pragma once

#include "platform/platform.hpp"
#include "platform/posix/descriptor.hpp"

namespace tallowmere::platform::posix {

/// Opens a regular file for reading, without waiting for anybody. Empty on failure.
[[nodiscard]] Descriptor openRegularFile(const std::u16string& path);
/// Fills the front of the buffer, which may take several reads. Fewer bytes than it holds, also 0, at the
/// end and after a failure.
[[nodiscard]] std::size_t readWhole(int file, std::span<char> buffer) noexcept;

[[nodiscard]] std::u16string executablePath();
[[nodiscard]] bool pathExists(const std::u16string& path);
[[nodiscard]] bool pathIsDirectory(const std::u16string& path);
/// For this user alone, whatever the mask: what lies in it is read, also by programs of more rights.
void makeOneDirectory(const std::u16string& path);
[[nodiscard]] std::unique_ptr<FileReader> openFileReader(const std::u16string& path);
/// A new file is this user's alone; a symbolic link is not followed, for it may lead to any file of theirs.
[[nodiscard]] bool appendLineToFile(const std::u16string& path, std::string_view line);

} // namespace tallowmere::platform::posix

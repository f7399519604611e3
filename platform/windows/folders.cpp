#include "platform/windows/handles.hpp"
#include "platform/windows/windows_platform.hpp"

#include <knownfolders.h>
#include <shlobj.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace tallowmere::platform {

std::u16string WindowsPlatform::programDataFolder() const {
    UniqueTaskMemory<wchar_t> path; // to be given back even after a failure
    if (FAILED(::SHGetKnownFolderPath(FOLDERID_ProgramData, 0, nullptr, path.receive())) || !path) return {};
    const std::wstring_view text(path.get());
    return {text.begin(), text.end()};
}

std::u16string WindowsPlatform::hostExecutable() const {
    std::array<wchar_t, MAX_PATH> path{};
    const DWORD length = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    // A cut path fills the buffer, and its last character is the terminator.
    return {path.data(), path.data() + std::min<std::size_t>(length, path.size() - 1)};
}

bool WindowsPlatform::exists(const std::u16string& path) const {
    return ::GetFileAttributesW(wide(path)) != INVALID_FILE_ATTRIBUTES;
}

bool WindowsPlatform::isDirectory(const std::u16string& path) const {
    const DWORD attributes = ::GetFileAttributesW(wide(path));
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

void WindowsPlatform::makeDirectory(const std::u16string& path) const {
    ::CreateDirectoryW(wide(path), nullptr);
}

} // namespace tallowmere::platform

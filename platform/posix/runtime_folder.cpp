#include "platform/posix/runtime_folder.hpp"

#include "platform/posix/environment.hpp"
#include "platform/posix/folders.hpp"
#include "platform/posix/text.hpp"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <utility>

namespace tallowmere::platform::posix {
namespace {

/// True when a folder could not be opened because there is none that the user may use, false when the system was
/// short of something: then it may well be there, and others are in it.
bool isNoFolder(int error) noexcept {
    return error == ENOENT || error == ENOTDIR || error == ELOOP || error == EACCES || error == ENAMETOOLONG;
}

/// A slash would lead elsewhere, a NUL would cut the name short, and the dots name folders.
bool isPlainName(std::u16string_view name) noexcept {
    return !name.empty() && name != u"." && name != u".." && name.find(u'/') == name.npos &&
           name.find(u'\0') == name.npos;
}

} // namespace

RuntimeFolder::RuntimeFolder() noexcept {
    if (const char* path = absolutePath("XDG_RUNTIME_DIR")) {
        Descriptor folder = openFolder(AT_FDCWD, path, O_PATH);
        if (!folder && !isNoFolder(errno)) return;
        struct stat status {};
        if (folder && ::fstat(folder.get(), &status) != 0) return;
        if (folder && isOwn(status, S_IWGRP | S_IWOTH)) folder_ = std::move(folder);
    }
    everybodys_ = !folder_;
    if (everybodys_) folder_ = openFolder(AT_FDCWD, "/dev/shm", O_PATH);
}

EntryName RuntimeFolder::entry(std::u16string_view name) const noexcept {
    EntryName entry;
    constexpr std::size_t kSuffixBytes = 12; // a dot, ten digits, the terminator
    const std::span<char> room = std::span(entry.text_).first(entry.text_.size() - kSuffixBytes);
    const std::size_t used = isPlainName(name) ? narrowInto(name, room) : 0;
    if (used == 0) return EntryName{};
    if (everybodys_) std::snprintf(entry.text_.data() + used, kSuffixBytes, ".%u", static_cast<unsigned>(::geteuid()));
    return entry;
}

} // namespace tallowmere::platform::posix

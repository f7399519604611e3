#include "platform/posix/settings_file.hpp"

#include "platform/posix/clock.hpp"
#include "platform/posix/environment.hpp"
#include "platform/posix/file_write.hpp"
#include "platform/posix/folders.hpp"

#include <fcntl.h>
#include <sys/file.h>

namespace tallowmere::platform::posix {
namespace {

constexpr const char* kFolder = "tallowmere";
constexpr const char* kFile = "registry.reg";
constexpr const char* kNewFile = "registry.reg.new";   // what a killed writer leaves, the next one removes
constexpr const char* kLockFile = "registry.reg.lock"; // stays
constexpr off_t kLargestFile = off_t{16} << 20;
constexpr mode_t kStrangersWriting = S_IWGRP | S_IWOTH; // a group may have other members
constexpr int kLockTries = 500;                         // tries, a millisecond apart

std::string configurationHome() {
    return userFolder("XDG_CONFIG_HOME", ".config");
}

Descriptor openSettingsFolder(bool make) {
    const std::string home = configurationHome();
    if (home.empty()) return {};
    if (make) makeFolders(home + "/" + kFolder);
    const Descriptor parent = openFolder(AT_FDCWD, home.c_str(), O_PATH);
    if (!parent) return {};
    Descriptor folder = openFolder(parent.get(), kFolder);
    struct stat status {};
    if (!folder || ::fstat(folder.get(), &status) != 0 || !isOwn(status, kStrangersWriting)) return {};
    return folder;
}

/// The mode is set because a mask may have kept the user's own rights off a file just made, or somebody have given
/// rights to others since.
Descriptor openLockFile(int folder) noexcept {
    Descriptor file(::openat(folder, kLockFile, O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY,
                             S_IRUSR | S_IWUSR));
    struct stat status {};
    const bool isTaken = file && ::fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) && isOwn(status, 0) &&
                         ::fchmod(file.get(), S_IRUSR | S_IWUSR) == 0;
    return isTaken ? std::move(file) : Descriptor();
}

} // namespace

SettingsFile::SettingsFile(bool make) : folder_(openSettingsFolder(make)) {}

std::string SettingsFile::path() {
    const std::string home = configurationHome();
    return home.empty() ? home : home + "/" + kFolder + "/" + kFile;
}

bool SettingsFile::isThere() {
    struct stat status {};
    const std::string name = path();
    return !name.empty() && ::lstat(name.c_str(), &status) == 0;
}

std::optional<std::string> SettingsFile::read() const {
    if (!folder_) return std::nullopt;
    const Descriptor file(::openat(folder_.get(), kFile, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (!file) return errno == ENOENT ? std::optional<std::string>(std::in_place) : std::nullopt;
    struct stat status {};
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || !isOwn(status, kStrangersWriting))
        return std::nullopt;
    if (status.st_size > kLargestFile) return std::nullopt;
    std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::read(file.get(), bytes.data() + done, bytes.size() - done);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::nullopt;
        if (count == 0) break; // has become shorter meanwhile
        done += static_cast<std::size_t>(count);
    }
    bytes.resize(done);
    return bytes;
}

bool SettingsFile::replace(const std::string& bytes) const {
    if (!folder_ || bytes.size() > static_cast<std::size_t>(kLargestFile)) return false; // it could not be read again
    ::unlinkat(folder_.get(), kNewFile, 0);
    const Descriptor file(
        ::openat(folder_.get(), kNewFile, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    const bool written = file && ::fchmod(file.get(), S_IRUSR | S_IWUSR) == 0 && writeWhole(file.get(), bytes) &&
                         ::fsync(file.get()) == 0 && ::renameat(folder_.get(), kNewFile, folder_.get(), kFile) == 0;
    if (!written) ::unlinkat(folder_.get(), kNewFile, 0);
    if (written) ::fsync(folder_.get());
    return written;
}

SettingsFile::WriteLock::WriteLock(const SettingsFile& file) noexcept
    : file_(file.folder_ ? openLockFile(file.folder_.get()) : Descriptor()) {
    for (int attempt = 0; file_ && attempt < kLockTries && !held_; ++attempt) {
        held_ = ::flock(file_.get(), LOCK_EX | LOCK_NB) == 0;
        if (!held_) sleepFor(std::chrono::milliseconds(1));
    }
}

/// Unlocks, for a child forked by another thread meanwhile would keep the lock with its descriptor.
SettingsFile::WriteLock::~WriteLock() {
    if (held_) ::flock(file_.get(), LOCK_UN);
}

} // namespace tallowmere::platform::posix

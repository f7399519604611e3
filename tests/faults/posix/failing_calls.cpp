#include "tests/faults/posix/failing_calls.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/random.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tallowmere::test {
namespace {

bool counting = false;
bool shortened = false;
bool unreserved = false;
std::size_t made = 0;
std::size_t failing = 0;
int failure = 0;
const char* failed = "";
std::ptrdiff_t mappings = 0; // made, and neither given back nor moved to a place that was there

/// Counts a call; true when it is the one that fails.
bool fails(const char* name) noexcept {
    if (!counting || ++made != failing) return false;
    failed = name;
    errno = failure;
    return true;
}

std::size_t shortOf(std::size_t size) noexcept {
    return counting && shortened ? std::min<std::size_t>(size, 1) : size;
}

} // namespace

void failCall(std::size_t nth, int error) noexcept {
    made = 0;
    failing = nth;
    failure = error;
    failed = "";
    shortened = false;
    counting = true;
}
void shortenTransfers() noexcept {
    failCall(0, 0);
    shortened = true;
}
void refuseReservations(bool refuse) noexcept {
    unreserved = refuse;
}
std::size_t endFailing() noexcept {
    counting = false;
    return made;
}
std::ptrdiff_t mappingsHeld() noexcept {
    return mappings;
}
const char* failedCall() noexcept {
    return failed;
}

} // namespace tallowmere::test

using tallowmere::test::fails;
using tallowmere::test::mappings;
using tallowmere::test::shortOf;
using tallowmere::test::unreserved;

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's own names

#define WRAPPED(result, name, parameters, arguments, nothing)                                                          \
    extern "C" result __real_##name parameters;                                                                        \
    extern "C" result __wrap_##name parameters;                                                                        \
    extern "C" result __wrap_##name parameters {                                                                       \
        return fails(#name) ? (nothing) : __real_##name arguments;                                                     \
    }

WRAPPED(int, bind, (int socket, const sockaddr* at, socklen_t length), (socket, at, length), -1)
WRAPPED(int, clock_gettime, (clockid_t clock, timespec* time), (clock, time), -1)
WRAPPED(int, connect, (int socket, const sockaddr* to, socklen_t length), (socket, to, length), -1)
WRAPPED(int, fchmod, (int file, mode_t mode), (file, mode), -1)
WRAPPED(DIR*, fdopendir, (int folder), (folder), nullptr)
WRAPPED(int, flock, (int file, int operation), (file, operation), -1)
WRAPPED(int, fstat, (int file, struct stat* status), (file, status), -1)
WRAPPED(int, fstatat, (int folder, const char* path, struct stat* status, int flags), (folder, path, status, flags), -1)
WRAPPED(int, ftruncate, (int file, off_t size), (file, size), -1)
WRAPPED(ssize_t, getrandom, (void* bytes, std::size_t size, unsigned flags), (bytes, size, flags), -1)
WRAPPED(int, lstat, (const char* path, struct stat* status), (path, status), -1)
WRAPPED(int, mkdir, (const char* path, mode_t mode), (path, mode), -1)
WRAPPED(int, poll, (pollfd * files, nfds_t count, int milliseconds), (files, count, milliseconds), -1)
WRAPPED(ssize_t, pwrite, (int file, const void* bytes, std::size_t size, off_t start), (file, bytes, size, start), -1)
WRAPPED(dirent*, readdir, (DIR * folder), (folder), nullptr)
WRAPPED(ssize_t, readlink, (const char* path, char* target, std::size_t size), (path, target, size), -1)
WRAPPED(ssize_t, recv, (int socket, void* bytes, std::size_t size, int flags), (socket, bytes, size, flags), -1)
WRAPPED(int, renameat, (int folder, const char* from, int other, const char* to), (folder, from, other, to), -1)
WRAPPED(int, stat, (const char* path, struct stat* status), (path, status), -1)
WRAPPED(int, socket, (int domain, int type, int protocol), (domain, type, protocol), -1)
WRAPPED(ssize_t, sendto,
        (int socket, const void* bytes, std::size_t size, int flags, const sockaddr* to, socklen_t length),
        (socket, bytes, size, flags, to, length), -1)
WRAPPED(int, unlinkat, (int folder, const char* path, int flags), (folder, path, flags), -1)
WRAPPED(std::tm*, localtime_r, (const std::time_t* time, std::tm* parts), (time, parts), nullptr)
WRAPPED(int, getpwuid_r, (uid_t user, passwd* entry, char* buffer, std::size_t size, passwd** found),
        (user, entry, buffer, size, found), (*found = nullptr, EIO))

extern "C" int __real_fallocate(int file, int mode, off_t start, off_t size);
extern "C" int __wrap_fallocate(int file, int mode, off_t start, off_t size);
extern "C" int __wrap_fallocate(int file, int mode, off_t start, off_t size) {
    if (fails("fallocate")) return -1;
    if (!unreserved) return __real_fallocate(file, mode, start, size);
    errno = EOPNOTSUPP;
    return -1;
}

/// Nothing is really brought to the disk: no test looks at what a power failure leaves, and it takes long.
extern "C" int __wrap_fsync(int file);
extern "C" int __wrap_fsync(int) {
    return fails("fsync") ? -1 : 0;
}

extern "C" ssize_t __real_read(int file, void* bytes, std::size_t size);
extern "C" ssize_t __wrap_read(int file, void* bytes, std::size_t size);
extern "C" ssize_t __wrap_read(int file, void* bytes, std::size_t size) {
    return fails("read") ? -1 : __real_read(file, bytes, shortOf(size));
}

extern "C" ssize_t __real_write(int file, const void* bytes, std::size_t size);
extern "C" ssize_t __wrap_write(int file, const void* bytes, std::size_t size);
extern "C" ssize_t __wrap_write(int file, const void* bytes, std::size_t size) {
    return fails("write") ? -1 : __real_write(file, bytes, shortOf(size));
}

extern "C" int __real_open(const char* path, int flags, ...);
extern "C" int __wrap_open(const char* path, int flags, ...);
extern "C" int __wrap_open(const char* path, int flags, ...) {
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return fails("open") ? -1 : __real_open(path, flags, mode);
}

extern "C" int __real_openat(int folder, const char* path, int flags, ...);
extern "C" int __wrap_openat(int folder, const char* path, int flags, ...);
extern "C" int __wrap_openat(int folder, const char* path, int flags, ...) {
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return fails("openat") ? -1 : __real_openat(folder, path, flags, mode);
}

extern "C" void* __real_mmap(void* at, std::size_t size, int access, int flags, int file, off_t start);
extern "C" void* __wrap_mmap(void* at, std::size_t size, int access, int flags, int file, off_t start);
extern "C" void* __wrap_mmap(void* at, std::size_t size, int access, int flags, int file, off_t start) {
    if (fails("mmap")) return MAP_FAILED;
    void* const mapping = __real_mmap(at, size, access, flags, file, start);
    if (mapping != MAP_FAILED && (flags & MAP_FIXED) == 0) ++mappings;
    return mapping;
}

/// Not among the calls that fail: given what was mapped it can't.
extern "C" int __real_munmap(void* at, std::size_t size);
extern "C" int __wrap_munmap(void* at, std::size_t size);
extern "C" int __wrap_munmap(void* at, std::size_t size) {
    const int result = __real_munmap(at, size);
    if (result == 0) --mappings;
    return result;
}

extern "C" void* __real_mremap(void* from, std::size_t size, std::size_t newSize, int flags, ...);
extern "C" void* __wrap_mremap(void* from, std::size_t size, std::size_t newSize, int flags, ...);
extern "C" void* __wrap_mremap(void* from, std::size_t size, std::size_t newSize, int flags, ...) {
    std::va_list rest;
    va_start(rest, flags);
    void* const to = (flags & MREMAP_FIXED) != 0 ? va_arg(rest, void*) : nullptr;
    va_end(rest);
    if (fails("mremap")) return MAP_FAILED;
    void* const mapping = __real_mremap(from, size, newSize, flags, to);
    if (mapping != MAP_FAILED && (flags & MREMAP_FIXED) != 0) --mappings;
    return mapping;
}

/// The library gives it a lock, a number or nothing; all of them fit a pointer.
extern "C" int __real_fcntl(int file, int command, ...);
extern "C" int __wrap_fcntl(int file, int command, ...);
extern "C" int __wrap_fcntl(int file, int command, ...) {
    std::va_list rest;
    va_start(rest, command);
    void* const argument = va_arg(rest, void*);
    va_end(rest);
    return fails("fcntl") ? -1 : __real_fcntl(file, command, argument);
}

// NOLINTEND(bugprone-reserved-identifier)

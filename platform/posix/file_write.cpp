#include "platform/posix/file_write.hpp"

#include <cerrno>
#include <ctime>
#include <unistd.h>

namespace tallowmere::platform::posix {

WithoutWriteSignals::WithoutWriteSignals() noexcept {
    sigset_t both;
    sigset_t pending;
    ::sigemptyset(&both);
    ::sigemptyset(&pending);
    ::sigemptyset(&raised_);
    ::sigpending(&pending);
    for (const int number : {SIGPIPE, SIGXFSZ}) {
        ::sigaddset(&both, number);
        if (::sigismember(&pending, number) != 1) ::sigaddset(&raised_, number);
    }
    ::pthread_sigmask(SIG_BLOCK, &both, &before_);
}

/// Leaves errno as it was, so that the error of the call before can still be asked.
WithoutWriteSignals::~WithoutWriteSignals() {
    const int error = errno;
    const timespec atOnce{};
    while (::sigtimedwait(&raised_, nullptr, &atOnce) > 0) {
    }
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    errno = error;
}

ssize_t writeInOneCall(int file, std::string_view bytes) noexcept {
    const WithoutWriteSignals guard;
    return ::write(file, bytes.data(), bytes.size());
}

bool writeWhole(int file, std::string_view bytes) noexcept {
    const WithoutWriteSignals guard;
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

} // namespace tallowmere::platform::posix

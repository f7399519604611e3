#include "platform/posix/notices.hpp"

#include "platform/posix/text.hpp"

#include <csignal>
#include <poll.h>
#include <unistd.h>

namespace tallowmere::platform::posix {
namespace {

/// Keeps a write into a pipe that nobody reads from ending the host program: the signal is blocked on this
/// thread and, when the write raised it, taken.
class WithoutPipeSignal {
  public:
    WithoutPipeSignal() noexcept {
        ::sigemptyset(&pipe_);
        ::sigaddset(&pipe_, SIGPIPE);
        sigset_t pending;
        ::sigpending(&pending);
        wasPending_ = ::sigismember(&pending, SIGPIPE) == 1;
        ::pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
    }
    ~WithoutPipeSignal() {
        const timespec atOnce{};
        if (!wasPending_) ::sigtimedwait(&pipe_, nullptr, &atOnce);
        ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    WithoutPipeSignal(const WithoutPipeSignal&) = delete;
    WithoutPipeSignal& operator=(const WithoutPipeSignal&) = delete;

  private:
    sigset_t pipe_{};
    sigset_t before_{};
    bool wasPending_ = false;
};

} // namespace

void printError(const std::u16string& message) {
    const std::string line = "tallowmere: " + narrowText(message) + "\n";
    // A stopped terminal or a pipe that is full must not hold up a program that is just being loaded.
    pollfd ready{STDERR_FILENO, POLLOUT, 0};
    if (::poll(&ready, 1, 0) != 1 || (ready.revents & POLLOUT) == 0) return;
    const WithoutPipeSignal guard;
    if (::write(STDERR_FILENO, line.data(), line.size()) < 0) return; // nobody is left to tell
}

} // namespace tallowmere::platform::posix

// Writing to files of which nobody knows what they are: a pipe that nobody reads, a file at its largest size.
#pragma once

#include <csignal>
#include <cstddef>
#include <string_view>
#include <sys/types.h>

namespace tallowmere::platform::posix {

/// While it lives, writing where it is not possible is an error (EPIPE, EFBIG) and not a signal (SIGPIPE, SIGXFSZ)
/// that ends the host program. The signals are blocked on this thread and, when a call raised them, taken; what was
/// pending before stays so.
class WithoutWriteSignals {
  public:
    WithoutWriteSignals() noexcept;
    ~WithoutWriteSignals();
    WithoutWriteSignals(const WithoutWriteSignals&) = delete;
    WithoutWriteSignals& operator=(const WithoutWriteSignals&) = delete;

  private:
    sigset_t raised_{}; // those of the two that were not pending before
    sigset_t before_{};
};

/// write(2) without those signals; it may take a part only.
ssize_t writeInOneCall(int file, std::string_view bytes) noexcept;

/// Writes everything, in as many calls as it takes; false when it can't.
[[nodiscard]] bool writeWhole(int file, std::string_view bytes) noexcept;

} // namespace tallowmere::platform::posix

// The owner of an open file.
#pragma once

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace tallowmere::platform::posix {

/// Owns a file descriptor, or none. Closing leaves errno as it was, so that the error of the call before
/// can still be asked.
class Descriptor {
  public:
    Descriptor() noexcept = default;
    explicit Descriptor(int number) noexcept : number_(offStandardStreams(number)) {}
    ~Descriptor() { reset(); }
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        if (this != &other) reset(std::exchange(other.number_, -1));
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    explicit operator bool() const noexcept { return number_ >= 0; }
    [[nodiscard]] int get() const noexcept { return number_; }
    [[nodiscard]] int release() noexcept { return std::exchange(number_, -1); }
    void reset(int number = -1) noexcept {
        const int error = errno;
        if (number_ >= 0) ::close(number_);
        number_ = number;
        errno = error;
    }

  private:
    /// In a program started without standard streams a file opened here could become one of them, and what the
    /// program prints would land in it: in the shared section, for one. So such a number is changed.
    static int offStandardStreams(int number) noexcept {
        if (number < 0 || number > STDERR_FILENO) return number;
        const int moved = ::fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        const int error = errno;
        ::close(number);
        errno = error;
        return moved;
    }

    int number_ = -1;
};

} // namespace tallowmere::platform::posix

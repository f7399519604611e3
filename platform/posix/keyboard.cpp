#include "platform/keyboard.hpp"

#include "platform/posix/key_decoder.hpp"
#include "platform/posix/raw_terminal.hpp"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace tallowmere::platform {
namespace {

constexpr int kSequenceMilliseconds = 50; // the rest of a key's sequence comes at once
constexpr unsigned kLongestWait = 60'000;

class PosixKeyboard final : public Keyboard {
  public:
    ~PosixKeyboard() override { posix::giveTerminalBack(); }

    std::optional<Key> next(unsigned milliseconds) override {
        if (auto key = decoder_.take(false)) return key;
        const int wait = static_cast<int>(std::min(milliseconds, kLongestWait));
        while (read(decoder_.isWaiting() ? kSequenceMilliseconds : wait)) {
            if (auto key = decoder_.take(false)) return key;
        }
        if (closed_) return Key{Key::Kind::Closed, {}};
        return decoder_.take(true);
    }

  private:
    /// False when nothing came.
    bool read(int milliseconds) {
        pollfd input{STDIN_FILENO, POLLIN, 0};
        const int ready = ::poll(&input, 1, milliseconds);
        if (ready <= 0) return false;
        char bytes[64];
        const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
        closed_ = count == 0 || (count < 0 && errno != EINTR && errno != EAGAIN);
        if (count <= 0) return false;
        decoder_.add({bytes, static_cast<std::size_t>(count)});
        return true;
    }

    posix::KeyDecoder decoder_;
    bool closed_ = false;
};

} // namespace

std::unique_ptr<Keyboard> openKeyboard() {
    auto keyboard = std::make_unique<PosixKeyboard>(); // first: what follows needs no memory
    return posix::takeSingleKeys() ? std::move(keyboard) : nullptr;
}

ScreenSize screenSize() noexcept {
    ScreenSize screen;
    winsize size{};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) return screen;
    if (size.ws_col != 0) screen.columns = size.ws_col;
    if (size.ws_row != 0) screen.rows = size.ws_row;
    return screen;
}

} // namespace tallowmere::platform

#include "platform/posix/raw_terminal.hpp"

#include <atomic>
#include <string_view>
#include <termios.h>
#include <unistd.h>

namespace tallowmere::platform::posix {
namespace {

termios before{}; // whole while `taken` is true
std::atomic<bool> taken{false};
static_assert(std::atomic<bool>::is_always_lock_free, "read by a signal handler");

} // namespace

bool takeSingleKeys() noexcept {
    if (::tcgetattr(STDIN_FILENO, &before) != 0) return false;
    termios single = before;
    single.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    single.c_cc[VMIN] = 1;
    single.c_cc[VTIME] = 0;
    // Who stopped the program would be left with a screen and a terminal that are not his.
    single.c_cc[VSUSP] = _POSIX_VDISABLE;
    single.c_cc[VQUIT] = _POSIX_VDISABLE;
    taken = true;
    if (::tcsetattr(STDIN_FILENO, TCSANOW, &single) == 0) return true;
    taken = false;
    return false;
}

void giveTerminalBack() noexcept {
    if (taken.exchange(false)) (void)::tcsetattr(STDIN_FILENO, TCSANOW, &before);
}

void leaveScreenSuddenly() noexcept {
    if (!taken) return;
    giveTerminalBack();
    constexpr std::string_view kLeave = "\x1b[0m\x1b[?25h\x1b[?1049l";
    if (::write(STDOUT_FILENO, kLeave.data(), kLeave.size()) < 0) return; // nothing more can be done
}

} // namespace tallowmere::platform::posix

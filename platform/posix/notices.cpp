#include "platform/posix/notices.hpp"

#include "platform/posix/file_write.hpp"
#include "platform/posix/text.hpp"

#include <poll.h>
#include <unistd.h>

namespace tallowmere::platform::posix {
void printError(const std::u16string& message) {
    const std::string line = "tallowmere: " + narrowText(message) + "\n";
    // A stopped terminal or a pipe that is full must not hold up a program that is just being loaded.
    pollfd ready{STDERR_FILENO, POLLOUT, 0};
    if (::poll(&ready, 1, 0) != 1 || (ready.revents & POLLOUT) == 0) return;
    if (writeInOneCall(STDERR_FILENO, line) < 0) return; // nobody is left to tell
}

} // namespace tallowmere::platform::posix

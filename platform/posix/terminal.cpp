#include "platform/terminal.hpp"

#include "platform/posix/raw_terminal.hpp"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <unistd.h>

namespace tallowmere::platform {
namespace {

std::atomic<bool> stopAsked{false};
static_assert(std::atomic<bool>::is_always_lock_free, "set by a signal handler");

/// A second request takes the system's own way, once the terminal is the shell's again.
extern "C" void askToStop(int number) {
    if (!stopAsked.exchange(true)) return;
    posix::leaveScreenSuddenly();
    static_cast<void>(::signal(number, SIG_DFL));
    static_cast<void>(::raise(number)); // delivered when this handler returns
}

/// Waiting calls are interrupted, so that they see the request.
void watchSignals() noexcept {
    struct sigaction action {};
    action.sa_handler = askToStop;
    ::sigemptyset(&action.sa_mask);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) ::sigaction(number, &action, nullptr);
}

bool understandsEscapes(int descriptor) noexcept {
    const char* kind = std::getenv("TERM");
    return ::isatty(descriptor) == 1 && kind != nullptr && *kind != '\0' && std::string_view(kind) != "dumb";
}

} // namespace

std::vector<std::string> commandLine(int argc, const char* const* argv) {
    return {argv, argv + argc};
}

bool outputIsTerminal() noexcept {
    return understandsEscapes(STDOUT_FILENO);
}

bool errorIsTerminal() noexcept {
    return understandsEscapes(STDERR_FILENO);
}

/// Bytes pass as they are.
void prepareStandardStreams() noexcept {
    static_cast<void>(::signal(SIGPIPE, SIG_IGN)); // a program started from here would inherit it; none is
}

bool readerHasGone(int error) noexcept {
    return error == EPIPE;
}

const std::atomic<bool>& stopRequested() noexcept {
    static const bool watching = (watchSignals(), true);
    static_cast<void>(watching);
    return stopAsked;
}

} // namespace tallowmere::platform

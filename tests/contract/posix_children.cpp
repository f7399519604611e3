#include "tests/contract/posix_children.hpp"

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <grp.h>
#include <iterator>
#include <stdexcept>
#include <string>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tallowmere::test {
namespace {

pid_t waitFor(pid_t id, int& status, int options) {
    pid_t result = 0;
    do result = ::waitpid(id, &status, options);
    while (result < 0 && errno == EINTR);
    return result;
}

[[noreturn]] void runTraced(const std::function<int()>& body) {
    if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) ::_exit(99);
    ::raise(SIGSTOP);
    ::_exit(body());
}

/// A child that runs a function and has been stopped after these system calls; `stepped` tells whether it stands there.
pid_t stopAfterSystemCalls(int calls, const std::function<int()>& body, Stepped& stepped) {
    const pid_t child = ::fork();
    if (child == 0) runTraced(body);
    int status = 0;
    waitFor(child, status, 0);
    stepped = WIFSTOPPED(status) ? Stepped::Stopped : Stepped::Unavailable;
    for (int i = 0; stepped == Stepped::Stopped && i < calls; ++i) {
        ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
        waitFor(child, status, 0);
        if (!WIFSTOPPED(status)) stepped = Stepped::Ended;
    }
    return child;
}

} // namespace

void Child::Line::say(char word) const {
    if (::write(out_, &word, 1) != 1) ::_exit(98);
}

void Child::Line::await() const {
    char word = 0;
    if (::read(in_, &word, 1) != 1) ::_exit(97);
}

Child::Child(const std::function<int(const Line&)>& body) {
    int down[2];
    int up[2];
    if (::pipe(down) != 0 || ::pipe(up) != 0) throw std::runtime_error("pipe");
    id_ = ::fork();
    if (id_ == 0) {
        ::close(down[1]);
        ::close(up[0]);
        ::_exit(body(Line(down[0], up[1])));
    }
    ::close(down[0]);
    ::close(up[1]);
    out_ = down[1];
    in_ = up[0];
}

Child::~Child() {
    kill();
    ::close(in_);
    ::close(out_);
}

char Child::hear() {
    char word = 0;
    return ::read(in_, &word, 1) == 1 ? word : '\0';
}

void Child::go() {
    if (::write(out_, "g", 1) != 1) throw std::runtime_error("the child is gone");
}

void Child::stop() {
    int status = 0;
    ::kill(id_, SIGSTOP);
    waitFor(id_, status, WUNTRACED);
}

void Child::carryOn() {
    ::kill(id_, SIGCONT);
}

void Child::kill() {
    if (id_ > 0) ::kill(id_, SIGKILL);
    finish();
}

int Child::finish() {
    if (id_ <= 0) return -1;
    int status = 0;
    waitFor(id_, status, 0);
    id_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

Stepped killAfterSystemCalls(int calls, const std::function<void()>& body, const std::function<void()>& whileStopped) {
    const auto ending = [&body] {
        body();
        return 0;
    };
    Stepped stepped = Stepped::Unavailable;
    const pid_t child = stopAfterSystemCalls(calls, ending, stepped);
    if (stepped != Stepped::Stopped) return stepped;
    whileStopped();
    ::kill(child, SIGKILL);
    int status = 0;
    waitFor(child, status, 0);
    return stepped;
}

Stepped carryOnAfterSystemCalls(int calls, const std::function<int()>& body,
                                const std::function<void()>& whileStopped) {
    Stepped stepped = Stepped::Unavailable;
    const pid_t child = stopAfterSystemCalls(calls, body, stepped);
    if (stepped != Stepped::Stopped) return stepped;
    whileStopped();
    ::ptrace(PTRACE_DETACH, child, nullptr, nullptr);
    int status = 0;
    waitFor(child, status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? stepped : Stepped::Failed;
}

int runAs(uid_t user, const std::function<int()>& body) {
    Child child([&](const Child::Line&) {
        if (::setgroups(0, nullptr) != 0 || ::setgid(user) != 0 || ::setuid(user) != 0) return 96;
        return body();
    });
    return child.finish();
}

int openFileCount() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<int>(std::distance(begin(files), end(files)));
}

int mappingsBelow(const std::filesystem::path& folder) {
    const std::string path = " " + std::filesystem::canonical(folder).string() + "/";
    std::ifstream maps("/proc/self/maps");
    int count = 0;
    for (std::string line; std::getline(maps, line);) count += line.find(path) != line.npos ? 1 : 0;
    return count;
}

} // namespace tallowmere::test

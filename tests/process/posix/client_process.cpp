#include "tests/process/posix/client_process.hpp"

#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace tallowmere::test {

ClientProcess::ClientProcess() {
    std::signal(SIGPIPE, SIG_IGN); // a killed client is noticed by its silence
    int input[2];
    int output[2];
    if (::pipe2(input, O_CLOEXEC) != 0 || ::pipe2(output, O_CLOEXEC) != 0) throw std::runtime_error("pipe");
    pid_ = ::fork();
    if (pid_ == 0) {
        ::dup2(input[0], STDIN_FILENO);
        ::dup2(output[1], STDOUT_FILENO);
        ::execl(TALLOWMERE_CLIENT, TALLOWMERE_CLIENT, static_cast<char*>(nullptr));
        ::_exit(127);
    }
    ::close(input[0]);
    ::close(output[1]);
    toChild_ = input[1];
    fromChild_ = output[0];
    if (readLine() != "ready") throw std::runtime_error("the client did not start");
}

ClientProcess::~ClientProcess() {
    finish();
}

std::string ClientProcess::ask(const std::string& command) {
    const std::string line = command + "\n";
    if (::write(toChild_, line.data(), line.size()) != static_cast<ssize_t>(line.size())) return {};
    return readLine();
}

int ClientProcess::finish() {
    closePipes();
    if (pid_ <= 0) return -1;
    int status = 0;
    ::waitpid(pid_, &status, 0);
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void ClientProcess::kill() {
    ::kill(pid_, SIGKILL);
    finish();
}

std::string ClientProcess::readLine() {
    std::string line;
    char byte = 0;
    while (::read(fromChild_, &byte, 1) == 1) {
        if (byte == '\n') return line;
        line += byte;
    }
    return {};
}

void ClientProcess::closePipes() {
    for (int* pipe : {&toChild_, &fromChild_}) {
        if (*pipe >= 0) ::close(*pipe);
        *pipe = -1;
    }
}

} // namespace tallowmere::test

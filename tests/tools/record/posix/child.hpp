// The real program as a process of its own.
#pragma once

#include <csignal>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace tallowmere::test {

class Child {
  public:
    explicit Child(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), TALLOWMERE_PROGRAM);
        std::vector<char*> pointers;
        for (std::string& each : arguments) pointers.push_back(each.data());
        pointers.push_back(nullptr);
        process_ = ::fork();
        if (process_ != 0) return;
        ::execv(pointers.front(), pointers.data());
        ::_exit(127);
    }
    ~Child() { end(SIGKILL); }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// The exit code, or 128 and the signal.
    int end(int signal) {
        if (process_ > 0) ::kill(process_, signal);
        return wait();
    }
    /// Until it has ended by itself; likewise.
    int wait() {
        if (process_ <= 0) return -1;
        int status = 0;
        ::waitpid(process_, &status, 0);
        process_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

  private:
    pid_t process_ = 0;
};

} // namespace tallowmere::test

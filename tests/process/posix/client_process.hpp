// One running client program (client.cpp), driven over pipes.
#pragma once

#include <string>
#include <sys/types.h>

namespace tallowmere::test {

class ClientProcess {
  public:
    /// Starts a client and waits until the library is loaded in it.
    ClientProcess();
    /// Lets it end by itself.
    ~ClientProcess();
    ClientProcess(const ClientProcess&) = delete;
    ClientProcess& operator=(const ClientProcess&) = delete;

    /// Sends a command and returns the answer without its line end; empty when the client is gone.
    std::string ask(const std::string& command);
    /// Ends the client's input and waits for it: its exit code, or -1 when a signal ended it.
    int finish();
    /// Ends it at once with SIGKILL.
    void kill();

  private:
    std::string readLine();
    void closePipes();
    pid_t pid_ = -1;
    int toChild_ = -1;
    int fromChild_ = -1;
};

/// A client whose library is loaded.
using ReadyClient = ClientProcess;

} // namespace tallowmere::test

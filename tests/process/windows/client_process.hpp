// One running client program (client.cpp), driven over pipes.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

namespace tallowmere::test {

/// Every wait ends: what takes longer than this has hung, and throws.
inline constexpr DWORD kLongestWaitMilliseconds = 60'000;

struct ClientOptions {
    std::filesystem::path program{};          // empty: the client as built
    std::filesystem::path currentDirectory{}; // empty: this process's
    std::wstring windows{};                   // "active" or "inactive": two windows of its own
    std::wstring desktop{};                   // "station\\desktop"; empty: this process's
};

class ClientProcess {
  public:
    /// Starts a client up to the moment at which it loads the library.
    explicit ClientProcess(const ClientOptions& options = {});
    /// Ends it, at once if it does not end by itself.
    ~ClientProcess();
    ClientProcess(const ClientProcess&) = delete;
    ClientProcess& operator=(const ClientProcess&) = delete;

    /// Waits until the library is loaded.
    void waitUntilReady();
    /// True once the library is loaded; does not wait.
    [[nodiscard]] bool hasAnswered() const;
    /// Sends a command and returns the answer without its line end.
    std::string ask(const std::string& command);
    /// Ends the client's input and waits for it: its exit code.
    DWORD finish();
    /// Ends it at once with TerminateProcess.
    void kill();

    [[nodiscard]] DWORD id() const { return id_; }
    /// The client's own windows; the first is the active one, if any is.
    [[nodiscard]] HWND firstWindow() const { return firstWindow_; }
    [[nodiscard]] HWND secondWindow() const { return secondWindow_; }

    /// The client program and the library that it loads.
    [[nodiscard]] static std::filesystem::path program();
    [[nodiscard]] static std::filesystem::path library();

  private:
    [[nodiscard]] bool start(const ClientOptions& options);
    [[nodiscard]] bool launch(const ClientOptions& options);
    [[nodiscard]] bool readLine(std::string& line);
    void closePipes();
    void close();

    HANDLE process_ = nullptr;
    DWORD id_ = 0;
    HANDLE toChild_ = nullptr;
    HANDLE fromChild_ = nullptr;
    HWND firstWindow_ = nullptr;
    HWND secondWindow_ = nullptr;
};

/// A client whose library is loaded.
class ReadyClient : public ClientProcess {
  public:
    explicit ReadyClient(const ClientOptions& options = {}) : ClientProcess(options) { waitUntilReady(); }
};

} // namespace tallowmere::test

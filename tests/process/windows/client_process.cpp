#include "tests/process/windows/client_process.hpp"

#include <array>
#include <cstdio>
#include <stdexcept>

namespace tallowmere::test {
namespace {

constexpr int kStarts = 5; // under Wine a process now and then ends silently at its start
constexpr DWORD kPollMilliseconds = 2;

std::filesystem::path ownFolder() {
    std::array<wchar_t, 1024> path{};
    ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    return std::filesystem::path(path.data()).parent_path();
}

void closeHandle(HANDLE& handle) {
    if (handle != nullptr) ::CloseHandle(handle);
    handle = nullptr;
}

/// A pipe of which the child inherits one end.
void makePipe(HANDLE& readEnd, HANDLE& writeEnd, HANDLE& ours) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    if (!::CreatePipe(&readEnd, &writeEnd, &inherited, 0)) throw std::runtime_error("no pipe");
    ::SetHandleInformation(ours, HANDLE_FLAG_INHERIT, 0);
}

HWND windowOf(unsigned long long number) {
    return reinterpret_cast<HWND>(static_cast<UINT_PTR>(number));
}

} // namespace

std::filesystem::path ClientProcess::program() {
    return ownFolder() / "windows_process_client.exe";
}

std::filesystem::path ClientProcess::library() {
    return ownFolder() / "tallowmere.dll";
}

ClientProcess::ClientProcess(const ClientOptions& options) {
    for (int i = 0; i < kStarts; ++i)
        if (start(options)) return;
    throw std::runtime_error("the client did not start");
}

ClientProcess::~ClientProcess() {
    closePipes();
    if (process_ != nullptr && ::WaitForSingleObject(process_, 5000) != WAIT_OBJECT_0) kill();
    close();
}

bool ClientProcess::start(const ClientOptions& options) {
    close();
    if (!launch(options)) return false;
    std::string line;
    if (!options.windows.empty()) {
        unsigned long long first = 0;
        unsigned long long second = 0;
        if (!readLine(line) || std::sscanf(line.c_str(), "%llu %llu", &first, &second) != 2) return false;
        firstWindow_ = windowOf(first);
        secondWindow_ = windowOf(second);
    }
    return readLine(line) && line == "loading";
}

bool ClientProcess::launch(const ClientOptions& options) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    makePipe(startup.hStdInput, toChild_, toChild_);
    makePipe(fromChild_, startup.hStdOutput, fromChild_);
    startup.hStdError = ::GetStdHandle(STD_ERROR_HANDLE);

    std::wstring desktop = options.desktop;
    if (!desktop.empty()) startup.lpDesktop = desktop.data();

    const std::filesystem::path program = options.program.empty() ? ClientProcess::program() : options.program;
    std::wstring commandLine = L"\"" + program.wstring() + L"\" \"" + library().wstring() + L"\"";
    if (!options.windows.empty()) commandLine += L" " + options.windows;
    const std::wstring folder = options.currentDirectory.wstring();
    PROCESS_INFORMATION made{};
    const BOOL started = ::CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                          folder.empty() ? nullptr : folder.c_str(), &startup, &made);
    ::CloseHandle(startup.hStdInput);
    ::CloseHandle(startup.hStdOutput);
    if (!started) return false;
    ::CloseHandle(made.hThread);
    process_ = made.hProcess;
    id_ = made.dwProcessId;
    return true;
}

void ClientProcess::waitUntilReady() {
    std::string line;
    if (!readLine(line) || line != "ready") throw std::runtime_error("the client did not load the library");
}

bool ClientProcess::hasAnswered() const {
    DWORD available = 0;
    return ::PeekNamedPipe(fromChild_, nullptr, 0, nullptr, &available, nullptr) && available != 0;
}

std::string ClientProcess::ask(const std::string& command) {
    const std::string line = command + "\n";
    DWORD written = 0;
    std::string answer;
    if (!::WriteFile(toChild_, line.data(), static_cast<DWORD>(line.size()), &written, nullptr) || !readLine(answer))
        throw std::runtime_error("the client is gone: " + command);
    return answer;
}

DWORD ClientProcess::finish() {
    closePipes();
    if (::WaitForSingleObject(process_, kLongestWaitMilliseconds) != WAIT_OBJECT_0)
        throw std::runtime_error("the client did not end");
    DWORD code = 0;
    ::GetExitCodeProcess(process_, &code);
    closeHandle(process_);
    return code;
}

void ClientProcess::kill() {
    ::TerminateProcess(process_, 99);
    ::WaitForSingleObject(process_, kLongestWaitMilliseconds);
    close();
}

/// False when the client has ended. Never blocks in a read: a client that hangs is noticed.
bool ClientProcess::readLine(std::string& line) {
    line.clear();
    for (const ULONGLONG start = ::GetTickCount64(); ::GetTickCount64() - start < kLongestWaitMilliseconds;) {
        DWORD available = 0;
        if (!::PeekNamedPipe(fromChild_, nullptr, 0, nullptr, &available, nullptr)) return false;
        if (available == 0) {
            ::Sleep(kPollMilliseconds);
            continue;
        }
        char byte = 0;
        DWORD got = 0;
        if (!::ReadFile(fromChild_, &byte, 1, &got, nullptr) || got != 1) return false;
        if (byte == '\n') return true;
        if (byte != '\r') line += byte;
    }
    throw std::runtime_error("the client does not answer");
}

void ClientProcess::closePipes() {
    closeHandle(toChild_);
    closeHandle(fromChild_);
}

void ClientProcess::close() {
    closePipes();
    closeHandle(process_);
}

} // namespace tallowmere::test

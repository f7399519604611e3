#include "platform/terminal.hpp"
#include "platform/windows/handles.hpp"

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace tallowmere::platform {
namespace {

constexpr DWORD kGraceMilliseconds = 10'000; // longer than the system lets a closed console's program live

std::atomic<bool> stop{false};
UINT outputPageBefore = 0;

std::string utf8(std::wstring_view text) {
    const auto units = static_cast<int>(text.size()); // a command line has at most 32767
    const int length = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), units, nullptr, 0, nullptr, nullptr);
    if (length <= 0) return {};
    std::string result(static_cast<std::size_t>(length), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text.data(), units, result.data(), length, nullptr, nullptr);
    return result;
}

/// Called on a thread of the system's own.
BOOL WINAPI onControl(DWORD event) {
    stop = true;
    // When the console or the session goes, the program ends as soon as this returns. Its main thread
    // gets the time to end by itself.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) ::Sleep(kGraceMilliseconds);
    return TRUE;
}

void restoreOutputPage() {
    ::SetConsoleOutputCP(outputPageBefore);
}

bool understandsEscapes(DWORD stream) noexcept {
    const HANDLE output = ::GetStdHandle(stream);
    DWORD mode = 0;
    return ::GetConsoleMode(output, &mode) != 0 &&
           ::SetConsoleMode(output, mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

} // namespace

std::vector<std::string> commandLine(int argc, const char* const* argv) {
    int count = 0;
    const UniqueLocalMemory<wchar_t*> arguments{::CommandLineToArgvW(::GetCommandLineW(), &count)};
    if (!arguments) return {argv, argv + argc};
    std::vector<std::string> result;
    for (int i = 0; i < count; ++i) result.push_back(utf8(arguments.get()[i]));
    return result;
}

bool outputIsTerminal() noexcept {
    return understandsEscapes(STD_OUTPUT_HANDLE);
}

bool errorIsTerminal() noexcept {
    return understandsEscapes(STD_ERROR_HANDLE);
}

void prepareStandardStreams() noexcept {
    // The code page belongs to the console, which the caller's shell goes on using.
    const UINT before = ::GetConsoleOutputCP();
    if (before != 0 && before != CP_UTF8 && ::SetConsoleOutputCP(CP_UTF8)) {
        outputPageBefore = before;
        (void)std::atexit(restoreOutputPage);
    }
    (void)::_setmode(::_fileno(stdin), _O_BINARY);
}

bool readerHasGone(int error) noexcept {
    return error == EPIPE || error == EINVAL; // the run-time library has no number for a pipe that is being closed
}

const std::atomic<bool>& stopRequested() noexcept {
    static const BOOL watching = ::SetConsoleCtrlHandler(onControl, TRUE);
    (void)watching;
    return stop;
}

} // namespace tallowmere::platform

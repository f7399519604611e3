// A program that loads the library and does as told, a command a line on its standard input. Answers each
// with a line. Ends with its input.
//   windows_process_client LIBRARY [active|inactive]
// It says "loading" before it loads the library and "ready" after it. With a second argument it first makes
// two windows of its own and tells their handles; the first of them is active, or none is.
#include <tallowmere/tallowmere.h>

#include <windows.h>

#include <shellapi.h>

#include <cinttypes>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <cwchar>

namespace {

template <class Function> Function function(HMODULE library, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(library, name)));
}
#define LIBRARY_FUNCTION(name) decltype(&::name) name = function<decltype(&::name)>(module, #name)

struct Library {
    explicit Library(const wchar_t* path) : module(::LoadLibraryW(path)) {}

    HMODULE module;
    LIBRARY_FUNCTION(GetBoatNum);
    LIBRARY_FUNCTION(GetZanVarNum);
    LIBRARY_FUNCTION(GetZanVar);
    LIBRARY_FUNCTION(GetZanVar2);
    LIBRARY_FUNCTION(GetZanVarName);
    LIBRARY_FUNCTION(GetSysBool);
    LIBRARY_FUNCTION(GetSysVar);
    LIBRARY_FUNCTION(SetZanUserVarName);
    LIBRARY_FUNCTION(SetZanVar);
    LIBRARY_FUNCTION(SetZanVar2);
    LIBRARY_FUNCTION(SetMOB);
};

void say(const char* format, ...) {
    std::va_list values;
    va_start(values, format);
    std::vprintf(format, values);
    va_end(values);
    std::printf("\n");
    std::fflush(stdout);
}

std::uint64_t payloadBits(const ChannelValue& record) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &record.payload, sizeof bits);
    return bits;
}

// What a function leaves alone shows as these.
constexpr double kUntouchedValue = -1;
constexpr std::uint16_t kUntouchedSource = 11111;
constexpr std::uint8_t kUntouchedFlag = 77;

bool answerReads(const Library& library, const char* line) {
    std::uint16_t channel = 0;
    std::uint16_t boat = 0;
    std::uint16_t source = kUntouchedSource;
    double value = kUntouchedValue;
    if (std::strcmp(line, "counts") == 0) {
        say("%d %d", library.GetBoatNum(), library.GetZanVarNum());
    } else if (std::sscanf(line, "get %hu %hu", &channel, &boat) == 2) {
        const unsigned result = library.GetZanVar(channel, &value, boat, &source);
        say("%u %.17g %u", result, value, unsigned{source});
    } else if (std::sscanf(line, "record %hu %hu", &channel, &boat) == 2) {
        ChannelValue record{};
        const unsigned result = library.GetZanVar2(channel, &record, boat, &source);
        say("%u %u %016" PRIX64 " %u", result, unsigned{record.kind}, payloadBits(record), unsigned{source});
    } else if (std::sscanf(line, "name %hu", &channel) == 1) {
        char name[ZAN_NAME_BYTES] = "untouched";
        library.GetZanVarName(channel, name);
        say("%s", name);
    } else if (std::sscanf(line, "flag %hu", &channel) == 1) {
        std::uint8_t flag = kUntouchedFlag;
        const unsigned result = library.GetSysBool(channel, &flag);
        say("%u %u", result, unsigned{flag});
    } else if (std::sscanf(line, "variable %hu", &channel) == 1) {
        const unsigned result = library.GetSysVar(channel, &value);
        say("%u %.17g", result, value);
    } else {
        return false;
    }
    return true;
}

bool answerWrites(const Library& library, const char* line) {
    std::uint16_t channel = 0;
    std::uint16_t boat = 0;
    double value = 0;
    double other = 0;
    char name[64] = "";
    if (std::sscanf(line, "set %hu %lf %hu", &channel, &value, &boat) == 3) {
        say("%u", unsigned{library.SetZanVar(channel, value, boat)});
    } else if (std::sscanf(line, "setrecord %hu %lf %hu", &channel, &value, &boat) == 3) {
        ChannelValue record{};
        record.kind = ZAN_KIND_DOUBLE;
        record.payload.number = value;
        say("%u", unsigned{library.SetZanVar2(channel, &record, boat)});
    } else if (std::sscanf(line, "rename %hu %63s", &channel, name) == 2) {
        library.SetZanUserVarName(channel, name);
        say("done");
    } else if (std::sscanf(line, "mob %lf %lf", &value, &other) == 2) {
        say("%d", library.SetMOB(value, other) != 0 ? 1 : 0);
    } else {
        return false;
    }
    return true;
}

/// Takes what is in the thread's message queue: the exit code of a quit message, or "none".
void answerQuit() {
    MSG message{};
    if (::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE))
        say("%d", static_cast<int>(message.wParam));
    else
        say("none");
}

HWND makeWindow(const wchar_t* title, int left) {
    return ::CreateWindowExW(0, L"STATIC", title, WS_OVERLAPPEDWINDOW | WS_VISIBLE, left, 20, 250, 120, nullptr,
                             nullptr, nullptr, nullptr);
}

unsigned long long number(HWND window) {
    return reinterpret_cast<UINT_PTR>(window);
}

void makeOwnWindows(bool active) {
    const HWND first = makeWindow(L"First", 20);
    const HWND second = makeWindow(L"Second", 420);
    ::SetActiveWindow(active ? first : nullptr);
    say("%llu %llu", number(first), number(second));
}

} // namespace

int main() {
    int count = 0;
    wchar_t** const arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    if (arguments == nullptr || count < 2) return 2;
    if (count > 2) makeOwnWindows(std::wcscmp(arguments[2], L"active") == 0);
    say("loading");
    const Library library(arguments[1]);
    if (library.module == nullptr) return 3;
    say("ready");
    char line[256];
    while (std::fgets(line, sizeof line, stdin) != nullptr) {
        line[std::strcspn(line, "\r\n")] = '\0';
        if (std::strcmp(line, "quit") == 0)
            answerQuit();
        else if (std::strcmp(line, "unload") == 0)
            say("%d", ::FreeLibrary(library.module) != 0 ? 1 : 0);
        else if (!answerReads(library, line) && !answerWrites(library, line))
            say("unknown command");
    }
    return 0;
}

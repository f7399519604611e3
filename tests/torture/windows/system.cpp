#include "tests/torture/system.hpp"

#include "tests/process/windows/user_settings.hpp"
#include "tests/support/temporary_folder.hpp"
#include "tests/support/windows/holdings.hpp"
#include "tests/torture/user_files.hpp"

#include <windows.h>

#include <psapi.h>

#include <array>
#include <filesystem>
#include <stdexcept>
#include <utility>

namespace tallowmere::torture {
namespace {

constexpr DWORD kLongestWaitMilliseconds = 60'000;
constexpr DWORD kPipeBytes = 65'536;
constexpr UINT kKilled = 99;
constexpr int kStarts = 5; // under Wine a process now and then ends silently at its start
constexpr char kGreeting = '+';

/// What this process starts ends with it.
HANDLE family() {
    static const HANDLE job = [] {
        const HANDLE made = ::CreateJobObjectW(nullptr, nullptr);
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        ::SetInformationJobObject(made, JobObjectExtendedLimitInformation, &limits, sizeof limits);
        return made;
    }();
    return job;
}

std::wstring ownProgram() {
    std::array<wchar_t, 1024> path{};
    ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    return path.data();
}

void closeHandle(HANDLE& handle) {
    if (handle != nullptr) ::CloseHandle(std::exchange(handle, nullptr));
}

void makePipe(HANDLE& readEnd, HANDLE& writeEnd, HANDLE& ours) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    if (!::CreatePipe(&readEnd, &writeEnd, &inherited, kPipeBytes)) throw std::runtime_error("no pipe");
    ::SetHandleInformation(ours, HANDLE_FLAG_INHERIT, 0);
}

bool appendWaiting(HANDLE pipe, std::string& said) {
    DWORD waiting = 0;
    if (!::PeekNamedPipe(pipe, nullptr, 0, nullptr, &waiting, nullptr)) return false;
    if (waiting == 0) return true;
    std::string bytes(waiting, '\0');
    DWORD count = 0;
    if (!::ReadFile(pipe, bytes.data(), waiting, &count, nullptr)) return false;
    said.append(bytes, 0, count);
    return true;
}

std::optional<std::string> takeLine(std::string& said) {
    const std::size_t end = said.find('\n');
    if (end == std::string::npos) return std::nullopt;
    std::string line = said.substr(0, end);
    said.erase(0, end + 1);
    return line;
}

/// Committed memory of a process that is neither a module's nor shared. Looked up region by region: not every system
/// tells the sum of another process.
std::uint64_t privateBytes(HANDLE process) {
    std::uint64_t bytes = 0;
    MEMORY_BASIC_INFORMATION region{};
    const char* place = nullptr;
    while (::VirtualQueryEx(process, place, &region, sizeof region) == sizeof region) {
        if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) bytes += region.RegionSize;
        place = static_cast<const char*>(region.BaseAddress) + region.RegionSize;
    }
    return bytes;
}

struct Stored {
    test::StoredValue operator()(double value) const { return test::number(value); }
    test::StoredValue operator()(std::uint32_t value) const { return test::dword(value); }
};

std::int64_t perform(std::int64_t count) {
    LARGE_INTEGER frequency{};
    ::QueryPerformanceFrequency(&frequency);
    return static_cast<std::int64_t>(static_cast<double>(count) * 1e9 / static_cast<double>(frequency.QuadPart));
}

} // namespace

struct Process::State {
    HANDLE process = nullptr;
    HANDLE input = nullptr;
    HANDLE output = nullptr;
    std::string said;

    bool start(const std::vector<std::string>& arguments) {
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESTDHANDLES;
        makePipe(startup.hStdInput, input, input);
        makePipe(output, startup.hStdOutput, output);
        startup.hStdError = ::GetStdHandle(STD_ERROR_HANDLE);
        const std::wstring program = ownProgram();
        std::wstring line = L"\"" + program + L"\"";
        for (const std::string& argument : arguments) line += L" " + std::wstring(argument.begin(), argument.end());
        PROCESS_INFORMATION made{};
        const BOOL started = ::CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                              &startup, &made);
        ::CloseHandle(startup.hStdInput);
        ::CloseHandle(startup.hStdOutput);
        if (!started) return false;
        ::AssignProcessToJobObject(family(), made.hProcess);
        ::CloseHandle(made.hThread);
        process = made.hProcess;
        return true;
    }
    bool hasEnded(DWORD milliseconds) const { return ::WaitForSingleObject(process, milliseconds) == WAIT_OBJECT_0; }
    void close() {
        closeHandle(input);
        closeHandle(output);
        closeHandle(process);
    }
};

Process::Process(const std::vector<std::string>& arguments) : state_(new State) {
    for (int i = 0; i < kStarts; ++i) {
        if (state_->start(arguments)) {
            while (state_->said.empty() && appendWaiting(state_->output, state_->said)) ::Sleep(0);
            if (!state_->said.empty() && state_->said.front() == kGreeting) {
                state_->said.erase(0, 1);
                return;
            }
        }
        state_->close();
    }
    throw std::runtime_error("a process does not start");
}

Process::~Process() {
    if (state_ == nullptr) return;
    if (state_->process != nullptr) kill();
    state_->close();
    delete state_;
}

Process::Process(Process&& other) noexcept : state_(std::exchange(other.state_, nullptr)) {}

void Process::say(const std::string& line) {
    const std::string words = line + "\n";
    DWORD written = 0;
    if (!::WriteFile(state_->input, words.data(), static_cast<DWORD>(words.size()), &written, nullptr))
        throw std::runtime_error("a process is gone");
}

std::string Process::hear() {
    for (const ULONGLONG start = ::GetTickCount64(); ::GetTickCount64() - start < kLongestWaitMilliseconds;) {
        if (auto line = takeLine(state_->said)) return *line;
        const std::size_t before = state_->said.size();
        if (!appendWaiting(state_->output, state_->said)) throw std::runtime_error("a process has ended");
        if (state_->said.size() == before) ::Sleep(1);
    }
    throw std::runtime_error("a process hangs");
}

std::string Process::overheard() {
    appendWaiting(state_->output, state_->said);
    return std::exchange(state_->said, {});
}

bool Process::kill() {
    const bool lived = !state_->hasEnded(0);
    ::TerminateProcess(state_->process, kKilled);
    state_->hasEnded(kLongestWaitMilliseconds);
    closeHandle(state_->process);
    return lived;
}

int Process::finish() {
    closeHandle(state_->input);
    if (!state_->hasEnded(kLongestWaitMilliseconds)) throw std::runtime_error("a process does not end");
    DWORD code = 0;
    ::GetExitCodeProcess(state_->process, &code);
    closeHandle(state_->process);
    return static_cast<int>(code);
}

Usage Process::usage() const {
    Usage usage;
    usage.privateBytes = privateBytes(state_->process); // first: to be looked at may take the process a page
    usage.handles = test::handleCount(::GetProcessId(state_->process));
    PROCESS_MEMORY_COUNTERS memory{};
    ::GetProcessMemoryInfo(state_->process, &memory, sizeof memory);
    usage.residentBytes = memory.WorkingSetSize;
    return usage;
}

Module::Module(const char* path)
    : handle_(::LoadLibraryW(std::filesystem::path(path).make_preferred().wstring().c_str())) {
    if (handle_ == nullptr) throw std::runtime_error("a library does not load");
}

Module::~Module() {
    ::FreeLibrary(static_cast<HMODULE>(handle_));
}

Module::AnyFunction Module::find(const char* name) const {
    const FARPROC found = ::GetProcAddress(static_cast<HMODULE>(handle_), name);
    if (found == nullptr) throw std::runtime_error(name);
    return reinterpret_cast<AnyFunction>(found);
}

Moment Moment::now() {
    LARGE_INTEGER count{};
    ::QueryPerformanceCounter(&count);
    return {perform(count.QuadPart), 0, 0, 0};
}

/// Times of threads come in steps of 10 ms and more.
bool Moment::tellsComputing() {
    return false;
}

/// The section is the logon's, and the settings are the user's, whose own are put aside meanwhile.
struct Surroundings::State {
    test::UserSettings settings;
    test::TemporaryFolder folder;
};

Surroundings::Surroundings(UserFiles files) : state_(std::make_unique<State>()) {
    if (files == UserFiles::kNone) return;
    writeUserFiles(state_->folder.path());
    state_->settings.set(L"DataFolder", test::text(state_->folder.path().wstring()));
    for (const auto& [name, value] : userSettings())
        state_->settings.set({name.begin(), name.end()}, std::visit(Stored{}, value));
}
Surroundings::~Surroundings() = default;

bool comeFirst() {
    return ::SetThreadPriority(::GetCurrentThread(), THREAD_PRIORITY_TIME_CRITICAL) != 0;
}

void sleepMicroseconds(std::int64_t microseconds) {
    ::Sleep(static_cast<DWORD>((microseconds + 999) / 1000));
}

std::optional<std::string> readLine() {
    static std::string heard;
    for (;;) {
        if (auto line = takeLine(heard)) return line;
        std::array<char, 256> bytes{};
        DWORD count = 0;
        if (!::ReadFile(::GetStdHandle(STD_INPUT_HANDLE), bytes.data(), static_cast<DWORD>(bytes.size()), &count,
                        nullptr) ||
            count == 0)
            return std::nullopt;
        heard.append(bytes.data(), count);
    }
}

bool inputWaits() {
    DWORD waiting = 0;
    return !::PeekNamedPipe(::GetStdHandle(STD_INPUT_HANDLE), nullptr, 0, nullptr, &waiting, nullptr) || waiting != 0;
}

void say(const std::string& words) {
    DWORD written = 0;
    if (!::WriteFile(::GetStdHandle(STD_OUTPUT_HANDLE), words.data(), static_cast<DWORD>(words.size()), &written,
                     nullptr))
        ::ExitProcess(1);
}

void greet() {
    say(std::string(1, kGreeting));
}

} // namespace tallowmere::torture

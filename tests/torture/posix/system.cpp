#include "tests/torture/system.hpp"
#include "tests/torture/user_files.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <poll.h>
#include <sched.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace tallowmere::torture {
namespace {

namespace fs = std::filesystem;

constexpr int kLongestWaitMilliseconds = 60'000;
constexpr std::int64_t kNanoseconds = 1'000'000'000;

std::int64_t clockOf(clockid_t clock) {
    timespec time{};
    ::clock_gettime(clock, &time);
    return time.tv_sec * kNanoseconds + time.tv_nsec;
}

bool isReady(int file, int milliseconds) {
    pollfd asked{file, POLLIN, 0};
    return ::poll(&asked, 1, milliseconds) == 1;
}

[[noreturn]] void become(std::vector<std::string> arguments, int input, int output) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::dup2(input, STDIN_FILENO);
    ::dup2(output, STDOUT_FILENO);
    std::string program = "torture";
    std::vector<char*> words{program.data()};
    for (std::string& argument : arguments) words.push_back(argument.data());
    words.push_back(nullptr);
    ::execv("/proc/self/exe", words.data());
    ::_exit(127);
}

std::uint64_t bytesAfter(const std::string& name, std::istream& status) {
    for (std::string word; status >> word;)
        if (word == name) {
            std::uint64_t kilobytes = 0;
            status >> kilobytes;
            return kilobytes * 1024;
        }
    return 0;
}

void writeSetting(std::ostream& file, double value) {
    std::array<unsigned char, sizeof value> bytes{};
    std::memcpy(bytes.data(), &value, sizeof value);
    file << "hex:";
    for (std::size_t i = 0; i < bytes.size(); ++i) file << (i == 0 ? "" : ",") << std::setw(2) << unsigned{bytes[i]};
}

void writeSetting(std::ostream& file, std::uint32_t value) {
    file << "dword:" << std::setw(8) << value;
}

void writeUserSettings(const fs::path& folder) {
    fs::create_directory(folder);
    const fs::path path = folder / "registry.reg";
    std::ofstream file(path);
    file << "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\Tallowmere\\core]\n"
         << std::hex << std::setfill('0');
    for (const UserSetting& setting : userSettings()) {
        file << '"' << setting.name << "\"=";
        std::visit([&file](auto value) { writeSetting(file, value); }, setting.value);
        file << '\n';
    }
    // Whatever the mask of who runs the trial, the group writes to neither.
    for (const fs::path& each : {folder, path})
        fs::permissions(each, fs::perms::group_write | fs::perms::others_write, fs::perm_options::remove);
}

/// One process is asked at most once a line; what follows a line is kept for the next.
std::optional<std::string> takeLine(std::string& said) {
    const std::size_t end = said.find('\n');
    if (end == std::string::npos) return std::nullopt;
    std::string line = said.substr(0, end);
    said.erase(0, end + 1);
    return line;
}

} // namespace

struct Process::State {
    pid_t id = -1;
    int input = -1;
    int output = -1;
    std::string said;

    bool readMore() {
        char bytes[4096];
        const ssize_t count = ::read(output, bytes, sizeof bytes);
        if (count > 0) said.append(bytes, static_cast<std::size_t>(count));
        return count > 0;
    }
    int wait() {
        int status = 0;
        pid_t ended = 0;
        do ended = ::waitpid(id, &status, 0);
        while (ended < 0 && errno == EINTR);
        id = -1;
        return status;
    }
};

Process::Process(const std::vector<std::string>& arguments) : state_(new State) {
    std::signal(SIGPIPE, SIG_IGN);
    int input[2];
    int output[2];
    if (::pipe2(input, O_CLOEXEC) != 0 || ::pipe2(output, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    state_->id = ::fork();
    if (state_->id == 0) {
        std::signal(SIGPIPE, SIG_DFL);
        become(arguments, input[0], output[1]);
    }
    ::close(input[0]);
    ::close(output[1]);
    state_->input = input[1];
    state_->output = output[0];
    if (state_->id < 0) throw std::runtime_error("no process");
}

Process::~Process() {
    if (state_ == nullptr) return;
    if (state_->id > 0) kill();
    if (state_->input >= 0) ::close(state_->input);
    ::close(state_->output);
    delete state_;
}

Process::Process(Process&& other) noexcept : state_(std::exchange(other.state_, nullptr)) {}

void Process::say(const std::string& line) {
    const std::string words = line + "\n";
    if (::write(state_->input, words.data(), words.size()) != static_cast<ssize_t>(words.size()))
        throw std::runtime_error("a process is gone");
}

std::string Process::hear() {
    for (;;) {
        if (auto line = takeLine(state_->said)) return *line;
        if (!isReady(state_->output, kLongestWaitMilliseconds)) throw std::runtime_error("a process hangs");
        if (!state_->readMore()) throw std::runtime_error("a process has ended");
    }
}

std::string Process::overheard() {
    while (isReady(state_->output, 0) && state_->readMore()) {
    }
    return std::exchange(state_->said, {});
}

bool Process::kill() {
    ::kill(state_->id, SIGKILL);
    const int status = state_->wait();
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

int Process::finish() {
    ::close(std::exchange(state_->input, -1));
    for (int i = 0; i < kLongestWaitMilliseconds; ++i) {
        siginfo_t ended{};
        if (::waitid(P_PID, static_cast<id_t>(state_->id), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
            ended.si_pid == state_->id) {
            const int status = state_->wait();
            return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        }
        sleepMicroseconds(i < 100 ? 50 : 1000);
    }
    throw std::runtime_error("a process does not end");
}

Usage Process::usage() const {
    const fs::path folder = "/proc/" + std::to_string(state_->id);
    std::ifstream status(folder / "status");
    Usage usage;
    usage.residentBytes = bytesAfter("VmRSS:", status);
    usage.privateBytes = bytesAfter("RssAnon:", status);
    const fs::directory_iterator files(folder / "fd");
    usage.handles = static_cast<std::uint64_t>(std::distance(begin(files), end(files)));
    return usage;
}

Module::Module(const char* path) : handle_(::dlopen(path, RTLD_NOW | RTLD_LOCAL)) {
    if (handle_ == nullptr) throw std::runtime_error(::dlerror());
}

Module::~Module() {
    ::dlclose(handle_);
}

Module::AnyFunction Module::find(const char* name) const {
    const auto found = reinterpret_cast<AnyFunction>(::dlsym(handle_, name));
    if (found == nullptr) throw std::runtime_error(name);
    return found;
}

Moment Moment::now() {
    rusage usage{};
    ::getrusage(RUSAGE_THREAD, &usage);
    return {clockOf(CLOCK_MONOTONIC), clockOf(CLOCK_THREAD_CPUTIME_ID), usage.ru_nvcsw, usage.ru_nivcsw};
}

bool Moment::tellsComputing() {
    return true;
}

struct Surroundings::State {
    fs::path folder;
};

Surroundings::Surroundings(UserFiles files) : state_(std::make_unique<State>()) {
    // In memory, as a user's runtime folder is: a section on a disk would be slow for reasons of the disk's.
    const fs::path shared = "/dev/shm";
    const fs::path parent = fs::is_directory(shared) ? shared : fs::temp_directory_path();
    std::string pattern = (parent / "tallowmere-torture-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no folder");
    state_->folder = pattern;
    for (const char* name : {"XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME"}) ::setenv(name, pattern.c_str(), 1);
    if (files == UserFiles::kNone) return;
    writeUserFiles(state_->folder / "Tallowmere");
    writeUserSettings(state_->folder / "tallowmere");
}

Surroundings::~Surroundings() {
    std::error_code ignored;
    fs::remove_all(state_->folder, ignored);
}

bool comeFirst() {
    const sched_param lowest{::sched_get_priority_min(SCHED_RR)};
    return ::sched_setscheduler(0, SCHED_RR, &lowest) == 0;
}

void sleepMicroseconds(std::int64_t microseconds) {
    const timespec time{microseconds / 1'000'000, microseconds % 1'000'000 * 1000};
    ::nanosleep(&time, nullptr);
}

std::optional<std::string> readLine() {
    static std::string heard;
    for (;;) {
        if (auto line = takeLine(heard)) return line;
        char bytes[256];
        const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0) return std::nullopt;
        heard.append(bytes, static_cast<std::size_t>(count));
    }
}

bool inputWaits() {
    return isReady(STDIN_FILENO, 0);
}

void say(const std::string& words) {
    if (::write(STDOUT_FILENO, words.data(), words.size()) < 0) ::_exit(1);
}

void greet() {}

} // namespace tallowmere::torture

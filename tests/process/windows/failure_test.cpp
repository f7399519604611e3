// The section made to fail for real, by what another process has put under its name.
#include "core/channels/section_name.hpp"
#include "platform/platform.hpp"
#include "tests/process/windows/message_box.hpp"
#include "tests/process/windows/process_fixture.hpp"
#include "tests/process/windows/screenshot.hpp"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <thread>
#include <utility>

namespace tallowmere::test {
namespace {

namespace fs = std::filesystem;

constexpr DWORD kSmallSectionBytes = 4096;

/// What stands in the section's way, and what the user is told.
struct Obstacle {
    const char* name;
    HANDLE (*make)();
    const wchar_t* message;
};

// An object of another kind has the name: nothing can be made or opened.
HANDLE makeEvent() {
    return ::CreateEventW(nullptr, TRUE, FALSE, kSectionName);
}

// A section has the name, but is too small to be mapped whole.
HANDLE makeSmallSection() {
    return ::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, kSmallSectionBytes, kSectionName);
}

// A section of the right size has the name, but no memory: who touched it would end.
HANDLE makeEmptyRoom() {
    return ::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE | SEC_RESERVE, 0, sizeof(SharedArea),
                                kSectionName);
}

std::string bytesOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The log file of a day in the root of the drive, by the day's English name.
fs::path logOf(const fs::path& drive, std::chrono::sys_days day) {
    static constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                              "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const std::chrono::year_month_day date(day);
    char name[64];
    std::snprintf(name, sizeof name, "log_system_%02u%s%04d.log", unsigned(date.day()),
                  kMonths[unsigned(date.month()) - 1], int(date.year()));
    return drive / name;
}

std::chrono::sys_seconds secondNow() {
    return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

/// The screen once it shows what it should and nothing changes any more: parts of a window are painted one
/// after another. After ten seconds, the screen as it is.
template <class Shows> Screenshot whenStill(Shows shows) {
    Screenshot last;
    for (int i = 0; i < 50; ++i) {
        ::Sleep(200);
        Screenshot now;
        if (shows(now) && now == last) break;
        last = std::move(now);
    }
    return last;
}

class SectionFailure : public WindowsProcesses, public testing::WithParamInterface<Obstacle> {
  protected:
    void SetUp() override {
        WindowsProcesses::SetUp();
        if (HasFatalFailure()) return;
        obstacle_ = GetParam().make();
        ASSERT_NE(obstacle_, nullptr);
        drive_ = folder_.root_path();
        for (const fs::path& log : possibleLogs()) logsBefore_[log] = bytesOf(log);
    }

    void TearDown() override {
        for (const auto& [log, content] : logsBefore_) {
            if (content.empty())
                fs::remove(log);
            else
                std::ofstream(log, std::ios::binary) << content;
        }
        removeObstacle();
        WindowsProcesses::TearDown();
    }

    void removeObstacle() {
        if (obstacle_ != nullptr) ::CloseHandle(obstacle_);
        obstacle_ = nullptr;
    }

    [[nodiscard]] ClientOptions options() const { return {.currentDirectory = folder_}; }

    /// A client that has been told of the failure and goes on without data.
    void dismissBoxOf(ClientProcess& client) const {
        pressButton(waitForBox(client.id()));
        client.waitUntilReady();
    }

    /// What the logs have gained: at most two, when the test runs over midnight.
    [[nodiscard]] std::string logged() const {
        std::string gained;
        for (const auto& [log, before] : logsBefore_) {
            const std::string now = bytesOf(log);
            EXPECT_TRUE(now.starts_with(before)) << "a log is appended to";
            gained += now.substr(before.size());
        }
        return gained;
    }

    /// True when `line` is what the library logs at one of these seconds.
    [[nodiscard]] static bool isLogLine(const std::string& line, std::chrono::sys_seconds from,
                                        std::chrono::sys_seconds to) {
        const std::wstring message = GetParam().message;
        for (auto second = from; second <= to; second += std::chrono::seconds(1)) {
            const std::chrono::hh_mm_ss clock(second - std::chrono::floor<std::chrono::days>(second));
            char stamp[32];
            std::snprintf(stamp, sizeof stamp, "%02d:%02d:%02d : ", static_cast<int>(clock.hours().count()),
                          static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()));
            if (line == stamp + std::string(message.begin(), message.end()) + "\r\n") return true;
        }
        return false;
    }

    [[nodiscard]] std::vector<fs::path> possibleLogs() const {
        const auto today = std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now());
        return {logOf(drive_, today), logOf(drive_, today + std::chrono::days(1))};
    }

    HANDLE obstacle_ = nullptr;
    fs::path drive_; // the root of the drive that clients run on
    std::map<fs::path, std::string> logsBefore_;
};

INSTANTIATE_TEST_SUITE_P(
    , SectionFailure,
    testing::Values(Obstacle{"CreationByAnEvent", makeEvent, L"Unable to create shared memory map"},
                    Obstacle{"MappingByASmallSection", makeSmallSection, L"Unable to map shared memory"},
                    Obstacle{"MappingByASectionWithoutMemory", makeEmptyRoom, L"Unable to map shared memory"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_P(SectionFailure, IsShownInABoxOfTheHostProgramWithOneButton) {
    ClientProcess client(options());
    const HWND box = waitForBox(client.id());
    const BoxContent content = contentOf(box);
    EXPECT_EQ(content.text, GetParam().message);
    EXPECT_EQ(content.caption, L"windows_process_client");
    EXPECT_EQ(content.buttons, std::vector<std::wstring>{L"OK"});
    EXPECT_FALSE(client.hasAnswered()) << "the library is loaded before the user has closed the box";
    pressButton(box);
    client.waitUntilReady();
    EXPECT_EQ(findBox(client.id()), nullptr) << "there is one box only";
}

TEST_P(SectionFailure, TheBoxHasTheErrorIcon) {
    ClientProcess client(options());
    const HWND box = waitForBox(client.id());
    const HWND icon = contentOf(box).icon;
    ASSERT_NE(icon, nullptr);
    RECT place{};
    ASSERT_TRUE(::GetWindowRect(icon, &place));

    // The error sign is a red disc; a warning, question or hint has no red area of this size.
    const int quarter = static_cast<int>((place.right - place.left) * (place.bottom - place.top)) / 4;
    const Screenshot screen = whenStill([&](const Screenshot& now) { return now.redPixels(place) >= quarter; });
    EXPECT_GE(screen.redPixels(place), quarter);
    if (const fs::path artifacts = artifactFolder(); !artifacts.empty()) {
        EXPECT_TRUE(screen.save(artifacts / ("section_failure_" + std::string(GetParam().name) + ".bmp")));
    }
    dismissBoxOf(client);
}

TEST_P(SectionFailure, TheCaptionIsTheHostsFileNameWithoutItsLastExtension) {
    const fs::path host = folder_ / "Race Display 2.1.exe";
    fs::copy_file(ClientProcess::program(), host);
    ClientProcess client({.program = host, .currentDirectory = folder_});
    EXPECT_EQ(contentOf(waitForBox(client.id())).caption, L"Race Display 2.1");
    dismissBoxOf(client);
}

TEST_P(SectionFailure, TheBoxBelongsToTheThreadsActiveWindow) {
    ClientProcess client({.currentDirectory = folder_, .windows = L"active"});
    const HWND box = waitForBox(client.id());
    EXPECT_EQ(::GetWindow(box, GW_OWNER), client.firstWindow());
    EXPECT_FALSE(::IsWindowEnabled(client.firstWindow()));
    dismissBoxOf(client);
    EXPECT_TRUE(::IsWindowEnabled(client.firstWindow()));
}

TEST_P(SectionFailure, WithoutAnActiveWindowTheBoxBlocksAllWindowsOfTheThread) {
    ClientProcess client({.currentDirectory = folder_, .windows = L"inactive"});
    const HWND box = waitForBox(client.id());
    EXPECT_EQ(::GetWindow(box, GW_OWNER), nullptr);
    EXPECT_FALSE(::IsWindowEnabled(client.firstWindow()));
    EXPECT_FALSE(::IsWindowEnabled(client.secondWindow()));
    dismissBoxOf(client);
    EXPECT_TRUE(::IsWindowEnabled(client.firstWindow()));
    EXPECT_TRUE(::IsWindowEnabled(client.secondWindow()));
}

TEST_P(SectionFailure, LeavesAQuitMessageWithCodeZeroInTheLoadingThreadsQueue) {
    ClientProcess client(options());
    dismissBoxOf(client);
    EXPECT_EQ(client.ask("quit"), "0");
    EXPECT_EQ(client.ask("quit"), "none") << "one failure, one message";
    EXPECT_EQ(client.finish(), 0u);
}

TEST_P(SectionFailure, IsLoggedInTheRootOfTheDriveOnceTheBoxIsClosed) {
    ClientProcess client(options());
    const HWND box = waitForBox(client.id());
    EXPECT_EQ(logged(), "") << "the line is written after the box";
    const auto before = secondNow();
    pressButton(box);
    client.waitUntilReady();
    EXPECT_PRED3(isLogLine, logged(), before, secondNow());
    EXPECT_FALSE(fs::exists(folder_ / "log_system"));
    EXPECT_FALSE(fs::exists(drive_ / "log_system"));
}

TEST_P(SectionFailure, TheNextOneOfTheDayIsAppended) {
    for (int i = 0; i < 2; ++i) {
        ClientProcess client(options());
        dismissBoxOf(client);
    }
    const std::string lines = logged();
    const std::size_t end = lines.find('\n') + 1;
    const auto now = secondNow();
    EXPECT_PRED3(isLogLine, lines.substr(0, end), now - std::chrono::minutes(5), now);
    EXPECT_PRED3(isLogLine, lines.substr(end), now - std::chrono::minutes(5), now);
}

TEST_P(SectionFailure, ALogThatCannotBeOpenedLosesTheLineOnly) {
    std::vector<HANDLE> held;
    for (const fs::path& log : possibleLogs())
        held.push_back(::CreateFileW(log.c_str(), GENERIC_READ, 0, nullptr, OPEN_ALWAYS, 0, nullptr));
    ClientProcess client(options());
    EXPECT_EQ(contentOf(waitForBox(client.id())).text, GetParam().message);
    dismissBoxOf(client);
    for (const HANDLE each : held) ::CloseHandle(each);
    EXPECT_EQ(client.ask("counts"), "100 414");
    EXPECT_EQ(client.ask("quit"), "0");
    EXPECT_EQ(logged(), "");
}

TEST_P(SectionFailure, AllFunctionsAnswerAsWithoutData) {
    ClientProcess client(options());
    dismissBoxOf(client);
    EXPECT_EQ(client.ask("counts"), "100 414");
    EXPECT_EQ(client.ask("get 1 0"), "0 -1 1") << "the value is left alone";
    EXPECT_EQ(client.ask("get 117 0"), "0 -1 117") << "an alternating channel stands for itself";
    EXPECT_EQ(client.ask("get 414 0"), "0 32767 32767");
    EXPECT_EQ(client.ask("record 1 0"), "0 1 40DFFFC000000000 1");
    EXPECT_EQ(client.ask("name 1"), "BSP");
    EXPECT_EQ(client.ask("flag 1"), "1 0");
    EXPECT_EQ(client.ask("flag 60"), "0 77") << "the flag is left alone";
    EXPECT_EQ(client.ask("variable 0"), "0 32767");
    EXPECT_EQ(client.ask("rename 3 Vane"), "done");
    EXPECT_NE(client.ask("name 175"), "Vane");
    EXPECT_EQ(client.ask("set 1 6.4 0"), "0");
    EXPECT_EQ(client.ask("set 48 51.5 0"), "1") << "a protected channel of the own boat answers so";
    EXPECT_EQ(client.ask("setrecord 1 6.4 0"), "0");
    EXPECT_EQ(client.ask("get 1 0"), "0 -1 1");
    EXPECT_EQ(client.ask("mob 50.5 -1.25"), "0");
    EXPECT_EQ(client.ask("unload"), "1");
    EXPECT_EQ(client.finish(), 0u);
}

TEST_P(SectionFailure, AfterTheObstacleIsGoneTheNextClientMakesTheSection) {
    ClientProcess without(options());
    dismissBoxOf(without);
    without.finish();
    removeObstacle();
    ReadyClient next(options());
    EXPECT_EQ(next.ask("quit"), "none");
    EXPECT_EQ(next.ask("set 1 6.5 0"), "1");
    EXPECT_EQ(next.ask("get 1 0"), "1 6.5 1");
}

/// A thread that loads a library of the system when it is told to, and what is known of it.
class LoadingThread {
  public:
    LoadingThread() : thread_(::CreateThread(nullptr, 0, run, this, 0, nullptr)) {}
    ~LoadingThread() {
        ::WaitForSingleObject(thread_, INFINITE);
        ::CloseHandle(thread_);
        ::FreeLibrary(loaded_);
    }
    LoadingThread(const LoadingThread&) = delete;
    LoadingThread& operator=(const LoadingThread&) = delete;

    void mayLoad() { mayLoad_ = true; }
    [[nodiscard]] bool runs() const { return runs_; }
    [[nodiscard]] bool isBack() const { return isBack_; }
    /// Comes back when the thread is back, or has begun to load and then stood at one place for a while.
    void waitUntilItStands() const {
        while (!loads_) ::Sleep(1);
        standStill();
    }
    /// Comes back when the thread is back or has stood at one place for a while.
    void standStill() const {
        DWORD64 place = 0;
        for (int same = 0; same < 20 && !isBack_; ::Sleep(5)) {
            const DWORD64 now = placeOf(thread_);
            same = now == place ? same + 1 : 0;
            place = now;
        }
    }
    bool end() {
        ::WaitForSingleObject(thread_, INFINITE);
        return loaded_ != nullptr;
    }

  private:
    static DWORD WINAPI run(void* owner) {
        auto& self = *static_cast<LoadingThread*>(owner);
        self.runs_ = true;
        while (!self.mayLoad_) ::Sleep(1);
        self.loads_ = true; // nothing but the call comes after this
        self.loaded_ = ::LoadLibraryW(L"winmm.dll");
        self.isBack_ = true;
        return 0;
    }
    static DWORD64 placeOf(HANDLE thread) {
        CONTEXT context{};
        context.ContextFlags = CONTEXT_CONTROL;
        ::SuspendThread(thread);
        ::GetThreadContext(thread, &context);
        ::ResumeThread(thread);
        return context.Rip;
    }

    std::atomic<bool> runs_ = false;
    std::atomic<bool> mayLoad_ = false;
    std::atomic<bool> loads_ = false;
    std::atomic<bool> isBack_ = false;
    HMODULE loaded_ = nullptr;
    HANDLE thread_;
};

TEST_P(SectionFailure, ThreadsThatLoadOrStartWhileTheBoxStandsGoOnAfterIt) {
    const fs::path before = fs::current_path();
    fs::current_path(folder_); // where the root of the drive is the one looked at
    // What the screen needs is loaded now: while the box stands nothing can be.
    EXPECT_EQ(findBox(::GetCurrentProcessId()), nullptr);
    LoadingThread earlier;
    while (!earlier.runs()) ::Sleep(1);
    HMODULE library = nullptr;
    std::thread loading([&] { library = ::LoadLibraryW(ClientProcess::library().c_str()); });
    const HWND box = waitForBox(::GetCurrentProcessId());
    earlier.mayLoad();
    earlier.waitUntilItStands();
    LoadingThread later; // its start is told to every library, as a load is
    later.mayLoad();
    later.standStill();
    EXPECT_FALSE(earlier.isBack());
    EXPECT_FALSE(later.runs());
    pressButton(box);
    loading.join();
    EXPECT_TRUE(earlier.end());
    EXPECT_TRUE(later.end());
    EXPECT_NE(library, nullptr);
    ::FreeLibrary(library);
    fs::current_path(before);
}

class SmallSection : public WindowsProcesses {};

TEST_F(SmallSection, OrOneWithoutMemoryIsNoneForWhoJoinsOrLooks) {
    const platform::Platform& platform = platform::hostPlatform();
    for (HANDLE (*make)() : {makeSmallSection, makeEmptyRoom}) {
        const HANDLE section = make();
        ASSERT_NE(section, nullptr);
        EXPECT_EQ(platform.openSection(sectionName(), kSharedAreaBytes), nullptr);
        EXPECT_EQ(platform.lookAtSection(sectionName(), kSharedAreaBytes), nullptr);
        ::CloseHandle(section);
    }
}

TEST_F(SmallSection, StaysAsItIs) {
    const HANDLE section = makeSmallSection();
    const void* const bytes = ::MapViewOfFile(section, FILE_MAP_READ, 0, 0, kSmallSectionBytes);
    ASSERT_NE(bytes, nullptr);
    ClientProcess client({.currentDirectory = folder_});
    const HWND box = waitForBox(client.id());
    client.kill();
    EXPECT_FALSE(::IsWindow(box));
    const std::string now(static_cast<const char*>(bytes), kSmallSectionBytes);
    EXPECT_EQ(now, std::string(kSmallSectionBytes, '\0'));
    ::UnmapViewOfFile(bytes);
    ::CloseHandle(section);
}

} // namespace
} // namespace tallowmere::test

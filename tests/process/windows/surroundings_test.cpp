// Hosts in surroundings that lack something: a screen, a desktop that the user sees, the right to write to the
// data folder.
#include "tests/process/windows/message_box.hpp"
#include "tests/process/windows/process_fixture.hpp"

#include <windows.h>

#include <aclapi.h>

#include <array>
#include <chrono>
#include <optional>
#include <stdexcept>
#include <string>

namespace tallowmere::test {
namespace {

namespace fs = std::filesystem;

/// An object of another kind under the section's name: the section can't be made.
class Obstacle {
  public:
    Obstacle() = default;
    ~Obstacle() { ::CloseHandle(event_); }
    Obstacle(const Obstacle&) = delete;
    Obstacle& operator=(const Obstacle&) = delete;

  private:
    HANDLE event_ = ::CreateEventW(nullptr, TRUE, FALSE, kSectionName);
};

/// The log files that a failure may write to are held, so that the drive stays as it was.
class HeldLogs {
  public:
    explicit HeldLogs(const fs::path& drive) {
        const auto today = std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now());
        for (const auto day : {today, today + std::chrono::days(1)}) hold(drive, std::chrono::year_month_day(day));
    }
    ~HeldLogs() {
        for (const auto& [log, wasThere, handle] : logs_) {
            ::CloseHandle(handle);
            if (!wasThere) ::DeleteFileW(log.c_str());
        }
    }
    HeldLogs(const HeldLogs&) = delete;
    HeldLogs& operator=(const HeldLogs&) = delete;

  private:
    struct Log {
        fs::path path;
        bool wasThere;
        HANDLE handle;
    };

    void hold(const fs::path& drive, std::chrono::year_month_day day) {
        static constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
        char name[64];
        std::snprintf(name, sizeof name, "log_system_%02u%s%04d.log", unsigned(day.day()),
                      kMonths[unsigned(day.month()) - 1], int(day.year()));
        const fs::path log = drive / name;
        const bool wasThere = fs::exists(log);
        logs_.push_back({log, wasThere, ::CreateFileW(log.c_str(), GENERIC_READ, 0, nullptr, OPEN_ALWAYS, 0, nullptr)});
    }

    std::vector<Log> logs_;
};

/// A window station with a desktop that no user sees, as services have them.
class UnseenDesktop {
  public:
    UnseenDesktop() {
        const HWINSTA own = ::GetProcessWindowStation();
        station_ = ::CreateWindowStationW(L"TallowmereTest", 0, WINSTA_ALL_ACCESS, nullptr);
        if (station_ == nullptr || !::SetProcessWindowStation(station_)) return;
        desktop_ = ::CreateDesktopW(L"Unseen", nullptr, nullptr, 0, GENERIC_ALL, nullptr);
        ::SetProcessWindowStation(own);
    }
    ~UnseenDesktop() {
        if (desktop_ != nullptr) ::CloseDesktop(desktop_);
        if (station_ != nullptr) ::CloseWindowStation(station_);
    }
    UnseenDesktop(const UnseenDesktop&) = delete;
    UnseenDesktop& operator=(const UnseenDesktop&) = delete;

    [[nodiscard]] bool isThere() const { return desktop_ != nullptr; }
    /// True when a message box of the process stands on it.
    [[nodiscard]] bool hasBoxOf(DWORD process) const {
        struct Search {
            DWORD process;
            bool found;
        } search{process, false};
        ::EnumDesktopWindows(
            desktop_,
            [](HWND window, LPARAM asked) -> BOOL {
                auto& wanted = *reinterpret_cast<Search*>(asked);
                std::array<wchar_t, 16> kind{};
                DWORD owner = 0;
                ::GetWindowThreadProcessId(window, &owner);
                ::GetClassNameW(window, kind.data(), static_cast<int>(kind.size()));
                wanted.found |= owner == wanted.process && std::wstring(kind.data()) == L"#32770";
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&search));
        return search.found;
    }
    [[nodiscard]] static std::wstring name() { return L"TallowmereTest\\Unseen"; }

  private:
    HWINSTA station_ = nullptr;
    HDESK desktop_ = nullptr;
};

bool isWine() {
    return ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

/// For as long as it lives, programs that are started find no screen. Of use where Windows is not the real one.
class NoScreen {
  public:
    NoScreen() {
        std::array<wchar_t, 256> name{};
        const DWORD length = ::GetEnvironmentVariableW(L"DISPLAY", name.data(), DWORD{name.size()});
        if (length != 0 && length < name.size()) before_ = name.data();
        ::SetEnvironmentVariableW(L"DISPLAY", nullptr);
    }
    ~NoScreen() {
        if (before_) ::SetEnvironmentVariableW(L"DISPLAY", before_->c_str());
    }
    NoScreen(const NoScreen&) = delete;
    NoScreen& operator=(const NoScreen&) = delete;

    [[nodiscard]] static bool isPossible() { return isWine(); }

  private:
    std::optional<std::wstring> before_;
};

/// Takes the right to write in a folder from everybody.
class ClosedFolder {
  public:
    explicit ClosedFolder(const fs::path& folder) : name_(folder.wstring()) { allow(GENERIC_READ | GENERIC_EXECUTE); }
    ~ClosedFolder() { allow(GENERIC_ALL); }
    ClosedFolder(const ClosedFolder&) = delete;
    ClosedFolder& operator=(const ClosedFolder&) = delete;

    /// False for a user whom no right holds back.
    [[nodiscard]] bool isClosed() const {
        const std::wstring probe = name_ + L"\\probe";
        if (!::CreateDirectoryW(probe.c_str(), nullptr)) return true;
        ::RemoveDirectoryW(probe.c_str());
        return false;
    }

  private:
    /// Sets the one list of the folder and takes nothing over from the folder above, which SetNamedSecurityInfo
    /// does under Wine whatever is asked.
    void allow(DWORD rights) {
        wchar_t everyone[] = L"EVERYONE";
        EXPLICIT_ACCESSW entry{};
        ::BuildExplicitAccessWithNameW(&entry, everyone, rights, GRANT_ACCESS, SUB_CONTAINERS_AND_OBJECTS_INHERIT);
        ACL* list = nullptr;
        if (::SetEntriesInAclW(1, &entry, nullptr, &list) != ERROR_SUCCESS) throw std::runtime_error("no access list");
        SECURITY_DESCRIPTOR descriptor{};
        ::InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION);
        ::SetSecurityDescriptorDacl(&descriptor, TRUE, list, FALSE);
        ::SetSecurityDescriptorControl(&descriptor, SE_DACL_PROTECTED, SE_DACL_PROTECTED);
        ::SetFileSecurityW(name_.c_str(), DACL_SECURITY_INFORMATION, &descriptor);
        ::LocalFree(list);
    }

    std::wstring name_;
};

class Surroundings : public WindowsProcesses {
  protected:
    void expectItWorks(ClientProcess& client) {
        EXPECT_EQ(client.ask("quit"), "none");
        EXPECT_EQ(client.ask("set 1 6.5 0"), "1");
        EXPECT_EQ(client.ask("get 1 0"), "1 6.5 1");
        EXPECT_EQ(client.ask("unload"), "1");
        EXPECT_EQ(client.finish(), 0u);
    }
};

TEST_F(Surroundings, OnADesktopThatNobodySeesTheLibraryWorks) {
    const UnseenDesktop desktop;
    if (!desktop.isThere()) GTEST_SKIP() << "this user may make no window station";
    ReadyClient client({.desktop = UnseenDesktop::name()});
    expectItWorks(client);
}

TEST_F(Surroundings, OnADesktopThatNobodySeesAFailureWaitsForItsBox) {
    const UnseenDesktop desktop;
    if (!desktop.isThere()) GTEST_SKIP() << "this user may make no window station";
    const HeldLogs logs(folder_.root_path());
    const Obstacle obstacle;
    ClientProcess client({.currentDirectory = folder_, .desktop = UnseenDesktop::name()});
    for (int i = 0; i < 600 && !desktop.hasBoxOf(client.id()); ++i) ::Sleep(50);
    EXPECT_TRUE(desktop.hasBoxOf(client.id()));
    EXPECT_EQ(findBox(client.id()), nullptr) << "it stands on the user's desktop";
    ::Sleep(500);
    EXPECT_FALSE(client.hasAnswered());
    client.kill();
}

TEST_F(Surroundings, WithoutAScreenTheLibraryWorks) {
    if (!NoScreen::isPossible()) GTEST_SKIP() << "Windows always has a screen";
    const NoScreen none;
    ReadyClient client;
    expectItWorks(client);
}

// A box that can't be made lets loading go on at once; one that stands where nobody sees it waits like any other.
TEST_F(Surroundings, WithoutAScreenLoadingGoesOnAfterAFailuresBox) {
    if (!NoScreen::isPossible()) GTEST_SKIP() << "Windows always has a screen";
    const HeldLogs logs(folder_.root_path());
    const NoScreen none;
    const Obstacle obstacle;
    ClientProcess client({.currentDirectory = folder_});
    HWND box = nullptr;
    while (box == nullptr && !client.hasAnswered()) box = findBox(client.id());
    if (box != nullptr) pressButton(box);
    client.waitUntilReady();
    EXPECT_EQ(client.ask("quit"), "0");
    EXPECT_EQ(client.ask("get 1 0"), "0 -1 1");
    EXPECT_EQ(client.ask("unload"), "1");
    EXPECT_EQ(client.finish(), 0u);
}

TEST_F(Surroundings, ADataFolderThatMayNotBeWrittenToIsUsedAsItIs) {
    fs::create_directories(folder_ / "config");
    writeConfigFile("channels.xml", R"(<channels><channel id="172" user="Vane"/></channels>)");
    const ClosedFolder closed(folder_);
    if (!closed.isClosed()) GTEST_SKIP() << "no right holds this user back";
    ReadyClient client;
    EXPECT_EQ(textIn(SectionView().area().dataFolder), folder_.wstring());
    EXPECT_EQ(textIn(SectionView().area().databasePath), (folder_ / "database" / "Tallowmere.db").wstring());
    EXPECT_FALSE(fs::exists(folder_ / "database"));
    EXPECT_EQ(client.ask("name 172"), "Vane");
    expectItWorks(client);
}

TEST_F(Surroundings, WithoutTheRightToMakeTheDefaultFolderThereIsNone) {
    settings_.reset(); // back to the user's, or none
    settings_.emplace();
    if (fs::exists(defaultFolder())) GTEST_SKIP() << "the default folder is there";
    if (!isWine()) GTEST_SKIP() << "the rights of the machine's own folder are not a test's to change";
    const ClosedFolder closed(defaultFolder().parent_path());
    if (!closed.isClosed()) GTEST_SKIP() << "no right holds this user back";
    ReadyClient client;
    EXPECT_EQ(textIn(SectionView().area().dataFolder), L"");
    EXPECT_EQ(textIn(SectionView().area().databasePath), L"\\database\\Tallowmere.db");
    EXPECT_FALSE(fs::exists(defaultFolder()));
    expectItWorks(client);
}

} // namespace
} // namespace tallowmere::test

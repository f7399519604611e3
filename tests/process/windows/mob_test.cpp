// The man-overboard call, from a client to a window of this process.
#include "tests/process/windows/process_fixture.hpp"

#include <cstring>
#include <vector>

namespace tallowmere::test {
namespace {

constexpr int kPolls = 500;
constexpr DWORD kPollMilliseconds = 10;

/// A host's main window, hidden.
class HostWindow {
  public:
    HostWindow()
        : window_(::CreateWindowExW(0, L"STATIC", L"Host", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr, nullptr,
                                    nullptr, nullptr)) {}
    ~HostWindow() { close(); }
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    [[nodiscard]] std::uint64_t number() const { return reinterpret_cast<UINT_PTR>(window_); }

    void close() {
        if (window_ != nullptr) ::DestroyWindow(window_);
        window_ = nullptr;
    }

    /// Waits for the next message from others; message 0 when none comes.
    [[nodiscard]] MSG next() const {
        MSG message{};
        for (int i = 0; i < kPolls; ++i) {
            if (arrived(message)) return message;
            ::Sleep(kPollMilliseconds);
        }
        return MSG{};
    }

    [[nodiscard]] bool arrived(MSG& message) const {
        return ::PeekMessageW(&message, window_, WM_APP, 0xBFFF, PM_REMOVE) != 0;
    }

  private:
    HWND window_;
};

class ManOverboard : public WindowsProcesses {};

TEST_F(ManOverboard, ReachesTheHostsWindowInAnotherProcess) {
    ReadyClient client;
    SectionView host(FILE_MAP_WRITE);
    const HostWindow window;
    host.writableArea().hostWindow = window.number();
    EXPECT_EQ(client.ask("mob 50.5 -1.25"), "1");
    const MSG message = window.next();
    EXPECT_EQ(message.message, 0x8019u);
    EXPECT_EQ(message.wParam, 8u);
    EXPECT_EQ(message.lParam, 0);

    const MobMark& mark = host.area().mob;
    EXPECT_STREQ(mark.name, "MOB");
    EXPECT_EQ(mark.latitude, 50.5);
    EXPECT_EQ(mark.longitude, -1.25);
    EXPECT_EQ(mark.flagA, 1);
    EXPECT_EQ(mark.flagB, 1);
}

TEST_F(ManOverboard, TwoCallsReplaceTheMarkAndPostTwoMessages) {
    ReadyClient client;
    SectionView host(FILE_MAP_WRITE);
    const HostWindow window;
    host.writableArea().hostWindow = window.number();
    EXPECT_EQ(client.ask("mob 50.5 -1.25"), "1");
    EXPECT_EQ(client.ask("mob -33.75 151.5"), "1");
    EXPECT_EQ(window.next().message, 0x8019u);
    EXPECT_EQ(window.next().message, 0x8019u);
    MSG third{};
    EXPECT_FALSE(window.arrived(third));
    EXPECT_EQ(host.area().mob.latitude, -33.75);
    EXPECT_EQ(host.area().mob.longitude, 151.5);
}

TEST_F(ManOverboard, WithoutAHostNothingIsStored) {
    ReadyClient client;
    const SectionView view;
    EXPECT_EQ(client.ask("mob 50.5 -1.25"), "0");
    EXPECT_EQ(view.area().mob.latitude, NO_VALUE);
    EXPECT_EQ(view.area().mob.longitude, NO_VALUE);
    EXPECT_EQ(view.area().mob.flagA, 0);
    EXPECT_EQ(view.area().mob.flagB, 0);
}

TEST_F(ManOverboard, AWindowThatIsGoneGetsNothingButTheMarkIsStored) {
    ReadyClient client;
    SectionView host(FILE_MAP_WRITE);
    HostWindow window;
    host.writableArea().hostWindow = window.number();
    window.close();
    EXPECT_EQ(client.ask("mob 50.5 -1.25"), "0");
    EXPECT_EQ(host.area().mob.latitude, 50.5);
    EXPECT_EQ(host.area().mob.flagA, 1);
}

// The value that means every top-level window in a post, left in the section by whatever program.
TEST_F(ManOverboard, NoHandleMeansEveryWindow) {
    ReadyClient client;
    SectionView host(FILE_MAP_WRITE);
    const HostWindow window;
    host.writableArea().hostWindow = reinterpret_cast<UINT_PTR>(HWND_BROADCAST);
    EXPECT_EQ(client.ask("mob 50.5 -1.25"), "0");
    host.writableArea().hostWindow = window.number();
    EXPECT_EQ(client.ask("mob 50.5 -1.25"), "1");
    EXPECT_EQ(window.next().message, 0x8019u);
    MSG second{};
    EXPECT_FALSE(window.arrived(second)) << "the first call reached the window";
}

} // namespace
} // namespace tallowmere::test

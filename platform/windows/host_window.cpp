// A message-only window of the system's plainest class, which is there without registering one. Its
// messages are taken straight from the thread's queue, so it needs no window procedure of its own.
#include "platform/host_window.hpp"
#include "platform/windows/handles.hpp"

#include <utility>

namespace tallowmere::platform {
namespace {

// The messages that programs agree on among themselves; what else is posted here is no host message.
constexpr UINT kFirstHostMessage = WM_APP;
constexpr UINT kLastHostMessage = 0xBFFF;

class MessageWindow final : public HostWindow {
  public:
    explicit MessageWindow(UniqueWindow window) noexcept : window_(std::move(window)) {}

    [[nodiscard]] std::uint64_t handle() const noexcept override { return reinterpret_cast<UINT_PTR>(window_.get()); }

    [[nodiscard]] std::optional<HostMessage> poll() noexcept override {
        MSG message{};
        while (::PeekMessageW(&message, window_.get(), 0, 0, PM_REMOVE)) {
            if (message.message == WM_QUIT) { // the thread's, not this window's: left for the thread's own loop
                ::PostQuitMessage(static_cast<int>(message.wParam));
                return std::nullopt;
            }
            if (message.message >= kFirstHostMessage && message.message <= kLastHostMessage)
                return HostMessage{message.message, message.wParam, message.lParam};
        }
        return std::nullopt;
    }

  private:
    UniqueWindow window_;
};

} // namespace

std::unique_ptr<HostWindow> makeHostWindow() {
    UniqueWindow window{::CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr)};
    return window ? std::make_unique<MessageWindow>(std::move(window)) : nullptr;
}

} // namespace tallowmere::platform

#include "platform/windows/system.hpp"
#include "platform/windows/windows_platform.hpp"

namespace tallowmere::platform {
namespace {

/// "nav" of "C:\Programs\Nav\nav.exe".
std::u16string programName(const std::u16string& executable) {
    const std::u16string name = executable.substr(executable.find_last_of(u"\\/:") + 1); // all of it for npos
    const std::size_t dot = name.rfind(u'.');
    return dot == 0 ? name : name.substr(0, dot);
}

} // namespace

void WindowsPlatform::showError(const std::u16string& message) const {
    const std::u16string caption = programName(hostExecutable());
    ::MessageBoxW(::GetActiveWindow(), wide(message), wide(caption), MB_OK | MB_ICONERROR | MB_TASKMODAL);
}

void WindowsPlatform::postQuit() const noexcept {
    ::PostQuitMessage(0);
}

int WindowsPlatform::postToHost(std::uint64_t window, const HostMessage& message) const noexcept {
    const auto handle = reinterpret_cast<HWND>(static_cast<UINT_PTR>(window));
    // Some values that are no window's stand for "every window" or "this thread" in a post.
    if (!::IsWindow(handle)) return 0;
    return ::PostMessageW(handle, message.message, static_cast<WPARAM>(message.wParam),
                          static_cast<LPARAM>(message.lParam));
}

} // namespace tallowmere::platform

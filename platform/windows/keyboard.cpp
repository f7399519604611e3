#include "platform/keyboard.hpp"

#include "platform/windows/system.hpp"

namespace tallowmere::platform {
namespace {

std::optional<Key::Kind> kindOf(WORD virtualKey) noexcept {
    switch (virtualKey) {
    case VK_RETURN:
        return Key::Kind::Enter;
    case VK_ESCAPE:
        return Key::Kind::Escape;
    case VK_BACK:
        return Key::Kind::Backspace;
    case VK_UP:
        return Key::Kind::Up;
    case VK_DOWN:
        return Key::Kind::Down;
    case VK_PRIOR:
        return Key::Kind::PageUp;
    case VK_NEXT:
        return Key::Kind::PageDown;
    case VK_HOME:
        return Key::Kind::Home;
    case VK_END:
        return Key::Kind::End;
    default:
        return std::nullopt;
    }
}

std::string utf8(const wchar_t* units, int count) {
    char bytes[8];
    const int length = ::WideCharToMultiByte(CP_UTF8, 0, units, count, bytes, sizeof bytes, nullptr, nullptr);
    return {bytes, static_cast<std::size_t>(length > 0 ? length : 0)};
}

class WindowsKeyboard final : public Keyboard {
  public:
    WindowsKeyboard(HANDLE input, DWORD before) : input_(input), before_(before) {}
    ~WindowsKeyboard() override { ::SetConsoleMode(input_, before_); }

    std::optional<Key> next(unsigned milliseconds) override {
        const DWORD answer = ::WaitForSingleObject(input_, milliseconds);
        if (answer == WAIT_TIMEOUT) return std::nullopt;
        INPUT_RECORD record{};
        DWORD count = 0;
        if (answer != WAIT_OBJECT_0 || !::ReadConsoleInputW(input_, &record, 1, &count) || count == 0)
            return Key{Key::Kind::Closed, {}};
        if (record.EventType != KEY_EVENT || !record.Event.KeyEvent.bKeyDown) return std::nullopt;
        return keyOf(record.Event.KeyEvent);
    }

  private:
    std::optional<Key> keyOf(const KEY_EVENT_RECORD& event) {
        if (const auto kind = kindOf(event.wVirtualKeyCode)) return Key{*kind, {}};
        const wchar_t unit = event.uChar.UnicodeChar;
        if (unit < 0x20 || unit == 0x7F) return std::nullopt;
        if (unit >= 0xD800 && unit < 0xDC00) { // the other half of the pair comes with the next event
            high_ = unit;
            return std::nullopt;
        }
        const wchar_t units[] = {high_, unit};
        const bool pair = high_ != 0 && unit >= 0xDC00 && unit < 0xE000;
        high_ = 0;
        return Key{Key::Kind::Character, pair ? utf8(units, 2) : utf8(&unit, 1)};
    }

    HANDLE input_;
    DWORD before_;
    wchar_t high_ = 0; // half of a surrogate pair
};

} // namespace

std::unique_ptr<Keyboard> openKeyboard() {
    const HANDLE input = ::GetStdHandle(STD_INPUT_HANDLE);
    DWORD before = 0;
    if (!::GetConsoleMode(input, &before)) return nullptr;
    auto keyboard = std::make_unique<WindowsKeyboard>(input, before);
    const DWORD lines = ENABLE_LINE_INPUT | ENABLE_ECHO_INPUT;
    return ::SetConsoleMode(input, (before & ~lines) | ENABLE_PROCESSED_INPUT) ? std::move(keyboard) : nullptr;
}

ScreenSize screenSize() noexcept {
    CONSOLE_SCREEN_BUFFER_INFO screen{};
    if (!::GetConsoleScreenBufferInfo(::GetStdHandle(STD_OUTPUT_HANDLE), &screen)) return {};
    const int columns = screen.srWindow.Right - screen.srWindow.Left + 1;
    const int rows = screen.srWindow.Bottom - screen.srWindow.Top + 1;
    return columns > 0 && rows > 0 ? ScreenSize{columns, rows} : ScreenSize{};
}

} // namespace tallowmere::platform

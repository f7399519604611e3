#include "tests/process/windows/message_box.hpp"

#include "tests/process/windows/client_process.hpp"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace tallowmere::test {
namespace {

constexpr DWORD kPollMilliseconds = 10;
constexpr UINT kAnswerMilliseconds = 5000; // for a window that is asked something

std::wstring classOf(HWND window) {
    std::array<wchar_t, 64> name{};
    ::GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    return name.data();
}

/// The window's text as its own process tells it.
std::wstring textOf(HWND window) {
    std::array<wchar_t, 512> text{};
    DWORD_PTR length = 0;
    if (!::SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()), SMTO_ABORTIFHUNG,
                               kAnswerMilliseconds, &length))
        throw std::runtime_error("the box does not answer");
    return text.data();
}

std::vector<HWND> visibleParts(HWND box, const wchar_t* className) {
    struct Search {
        const wchar_t* className;
        std::vector<HWND> found;
    } search{className, {}};
    const auto visit = [](HWND part, LPARAM context) -> BOOL {
        auto& wanted = *reinterpret_cast<Search*>(context);
        if (classOf(part) == wanted.className && ::IsWindowVisible(part)) wanted.found.push_back(part);
        return TRUE;
    };
    ::EnumChildWindows(box, visit, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::wstring labelOf(HWND button) {
    std::wstring label = textOf(button);
    std::erase(label, L'&');
    return label;
}

} // namespace

HWND findBox(DWORD process) {
    struct Search {
        DWORD process;
        HWND found;
    } search{process, nullptr};
    const auto visit = [](HWND window, LPARAM context) -> BOOL {
        auto& wanted = *reinterpret_cast<Search*>(context);
        DWORD owner = 0;
        ::GetWindowThreadProcessId(window, &owner);
        if (owner == wanted.process && classOf(window) == L"#32770" && ::IsWindowVisible(window)) wanted.found = window;
        return TRUE;
    };
    ::EnumWindows(visit, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND waitForBox(DWORD process) {
    for (const ULONGLONG start = ::GetTickCount64(); ::GetTickCount64() - start < kLongestWaitMilliseconds;) {
        if (const HWND box = findBox(process)) return box;
        ::Sleep(kPollMilliseconds);
    }
    throw std::runtime_error("no message box");
}

BoxContent contentOf(HWND box) {
    BoxContent content;
    content.caption = textOf(box);
    for (const HWND part : visibleParts(box, L"Static")) {
        if ((::GetWindowLongPtrW(part, GWL_STYLE) & SS_TYPEMASK) == SS_ICON)
            content.icon = part;
        else
            content.text += textOf(part);
    }
    for (const HWND button : visibleParts(box, L"Button")) content.buttons.push_back(labelOf(button));
    return content;
}

void pressButton(HWND box) {
    const std::vector<HWND> buttons = visibleParts(box, L"Button");
    if (buttons.size() != 1) throw std::runtime_error("the box has not one button");
    ::PostMessageW(buttons.front(), BM_CLICK, 0, 0);
}

} // namespace tallowmere::test

// A message box of another process: found, read and closed as a user would.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace tallowmere::test {

struct BoxContent {
    std::wstring caption;
    std::wstring text;
    std::vector<std::wstring> buttons; // labels of the visible ones, without the mark of their key
    HWND icon = nullptr;               // the part that shows the icon; null: there is none
};

/// Waits for a message box of the process to be visible. Throws when none comes.
[[nodiscard]] HWND waitForBox(DWORD process);
/// A visible message box of the process now, or null.
[[nodiscard]] HWND findBox(DWORD process);
[[nodiscard]] BoxContent contentOf(HWND box);
/// Presses the box's only button.
void pressButton(HWND box);

} // namespace tallowmere::test

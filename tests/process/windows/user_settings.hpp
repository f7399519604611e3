// The user's real settings, for the time of a test.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace tallowmere::test {

/// A registry value as stored: nothing is added or checked.
struct StoredValue {
    DWORD type;
    std::vector<BYTE> bytes;
};

[[nodiscard]] StoredValue text(const std::wstring& characters, int terminators = 1);
[[nodiscard]] StoredValue dword(DWORD value);
[[nodiscard]] StoredValue number(double value); // REG_BINARY, 8 bytes
[[nodiscard]] StoredValue raw(DWORD type, std::size_t size, BYTE filler = 0x41);

/// Puts the settings of the user who runs the tests aside, and back at the end; in between there are only
/// those of the test. Those put aside survive a test that crashes.
class UserSettings {
  public:
    UserSettings();
    ~UserSettings();
    UserSettings(const UserSettings&) = delete;
    UserSettings& operator=(const UserSettings&) = delete;

    /// Sets a value of the core key, which is made where missing. Throws unless it is then stored as given.
    void set(const std::wstring& name, const StoredValue& value);
    [[nodiscard]] static bool coreKeyIsThere();
};

} // namespace tallowmere::test

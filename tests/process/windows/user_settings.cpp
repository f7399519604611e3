#include "tests/process/windows/user_settings.hpp"

#include <cstring>
#include <stdexcept>

namespace tallowmere::test {
namespace {

constexpr wchar_t kRoot[] = L"Software\\Tallowmere";
constexpr wchar_t kPutAside[] = L"Software\\TallowmerePutAsideByTests";
constexpr wchar_t kCore[] = L"Software\\Tallowmere\\core";

bool keyIsThere(const wchar_t* path) {
    HKEY key = nullptr;
    const bool there = ::RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_READ, &key) == ERROR_SUCCESS;
    if (there) ::RegCloseKey(key);
    return there;
}

void moveKey(const wchar_t* from, const wchar_t* to) {
    HKEY key = nullptr;
    if (::RegCreateKeyExW(HKEY_CURRENT_USER, to, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr) !=
        ERROR_SUCCESS)
        throw std::runtime_error("the user's settings cannot be put aside");
    const LSTATUS copied = ::RegCopyTreeW(HKEY_CURRENT_USER, from, key);
    ::RegCloseKey(key);
    if (copied != ERROR_SUCCESS) throw std::runtime_error("the user's settings cannot be put aside");
    ::RegDeleteTreeW(HKEY_CURRENT_USER, from);
}

StoredValue bytesOf(DWORD type, const void* data, std::size_t size) {
    const auto* const first = static_cast<const BYTE*>(data);
    return {type, {first, first + size}};
}

} // namespace

StoredValue text(const std::wstring& characters, int terminators) {
    const std::wstring stored = characters + std::wstring(static_cast<std::size_t>(terminators), L'\0');
    return bytesOf(REG_SZ, stored.data(), stored.size() * sizeof(wchar_t));
}

StoredValue dword(DWORD value) {
    return bytesOf(REG_DWORD, &value, sizeof value);
}

StoredValue number(double value) {
    return bytesOf(REG_BINARY, &value, sizeof value);
}

StoredValue raw(DWORD type, std::size_t size, BYTE filler) {
    return {type, std::vector<BYTE>(size, filler)};
}

UserSettings::UserSettings() {
    if (keyIsThere(kPutAside)) // an earlier run did not come to its end
        ::RegDeleteTreeW(HKEY_CURRENT_USER, kRoot);
    else if (keyIsThere(kRoot))
        moveKey(kRoot, kPutAside);
}

UserSettings::~UserSettings() {
    ::RegDeleteTreeW(HKEY_CURRENT_USER, kRoot);
    if (keyIsThere(kPutAside)) moveKey(kPutAside, kRoot);
}

void UserSettings::set(const std::wstring& name, const StoredValue& value) {
    HKEY key = nullptr;
    ::RegCreateKeyExW(HKEY_CURRENT_USER, kCore, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
    // The system adds a terminator to a text when the one character behind it is one: none is, here.
    std::vector<BYTE> bytes = value.bytes;
    bytes.insert(bytes.end(), {0xFF, 0xFF});
    ::RegSetValueExW(key, name.c_str(), 0, value.type, bytes.data(), static_cast<DWORD>(value.bytes.size()));
    DWORD type = 0;
    auto size = static_cast<DWORD>(bytes.size());
    std::vector<BYTE> stored(bytes.size());
    const LSTATUS read = ::RegQueryValueExW(key, name.c_str(), nullptr, &type, stored.data(), &size);
    ::RegCloseKey(key);
    stored.resize(size);
    if (read != ERROR_SUCCESS || type != value.type || stored != value.bytes)
        throw std::runtime_error("the registry did not keep a value as given");
}

bool UserSettings::coreKeyIsThere() {
    return keyIsThere(kCore);
}

} // namespace tallowmere::test

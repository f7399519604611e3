#include "platform/windows/handles.hpp"
#include "platform/windows/windows_platform.hpp"

#include <algorithm>
#include <limits>
#include <utility>

namespace tallowmere::platform {
namespace {

constexpr REGSAM kAccess = KEY_READ | KEY_WRITE;
static_assert(kAccess == 0x2001F);

constexpr std::size_t kLargestValue = std::numeric_limits<DWORD>::max();

class RegistryKey final : public SettingsKey {
  public:
    explicit RegistryKey(UniqueKey key) noexcept : key_(std::move(key)) {}

    [[nodiscard]] std::optional<SettingsInfo> describe(const std::u16string& name) const override {
        DWORD type = 0;
        DWORD size = 0;
        if (::RegQueryValueExW(key_.get(), wide(name), nullptr, &type, nullptr, &size) != ERROR_SUCCESS)
            return std::nullopt;
        return SettingsInfo{static_cast<SettingsType>(type), size};
    }

    [[nodiscard]] std::optional<SettingsInfo> read(const std::u16string& name,
                                                   std::span<std::byte> buffer) const override {
        BYTE none = 0; // no buffer at all would ask for the size only, and succeed
        BYTE* const bytes = buffer.empty() ? &none : reinterpret_cast<BYTE*>(buffer.data());
        DWORD type = 0;
        auto size = static_cast<DWORD>(std::min(buffer.size(), kLargestValue));
        if (::RegQueryValueExW(key_.get(), wide(name), nullptr, &type, bytes, &size) != ERROR_SUCCESS)
            return std::nullopt;
        return SettingsInfo{static_cast<SettingsType>(type), size};
    }

    [[nodiscard]] std::vector<std::u16string> names() const override {
        constexpr DWORD kLongestName = 16'383; // the registry's own limit
        std::vector<std::u16string> names;
        std::u16string name(kLongestName + 1, u'\0');
        for (DWORD index = 0;; ++index) {
            auto length = static_cast<DWORD>(name.size());
            auto* const buffer = reinterpret_cast<wchar_t*>(name.data());
            if (::RegEnumValueW(key_.get(), index, buffer, &length, nullptr, nullptr, nullptr, nullptr) !=
                ERROR_SUCCESS)
                return names;
            names.push_back(name.substr(0, length));
        }
    }

    void writeString(const std::u16string& name, const std::u16string& text) override {
        if (text.size() >= kLargestValue / sizeof(char16_t)) return;
        write(name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(char16_t));
    }

    void writeDword(const std::u16string& name, std::uint32_t value) override {
        write(name, REG_DWORD, &value, sizeof value);
    }

  private:
    void write(const std::u16string& name, DWORD type, const void* bytes, std::size_t size) {
        ::RegSetValueExW(key_.get(), wide(name), 0, type, static_cast<const BYTE*>(bytes), static_cast<DWORD>(size));
    }

    UniqueKey key_;
};

std::unique_ptr<SettingsKey> ownerOf(UniqueKey key) {
    return key ? std::make_unique<RegistryKey>(std::move(key)) : nullptr;
}

} // namespace

std::unique_ptr<SettingsKey> WindowsPlatform::openSettings(const std::u16string& path) const {
    UniqueKey key;
    if (::RegOpenKeyExW(HKEY_CURRENT_USER, wide(path), 0, kAccess, key.receive()) != ERROR_SUCCESS) return nullptr;
    return ownerOf(std::move(key));
}

std::unique_ptr<SettingsKey> WindowsPlatform::createSettings(const std::u16string& path) const {
    UniqueKey key;
    if (::RegCreateKeyExW(HKEY_CURRENT_USER, wide(path), 0, nullptr, REG_OPTION_NON_VOLATILE, kAccess, nullptr,
                          key.receive(), nullptr) != ERROR_SUCCESS)
        return nullptr;
    return ownerOf(std::move(key));
}

} // namespace tallowmere::platform

#include "platform/windows/handles.hpp"
#include "platform/windows/windows_platform.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <map>
#include <string_view>
#include <utility>

namespace tallowmere::platform {
namespace {

constexpr REGSAM kAccess = KEY_READ | KEY_WRITE;
static_assert(kAccess == 0x2001F);

constexpr std::size_t kLargestValue = std::numeric_limits<DWORD>::max();
constexpr DWORD kLongestName = 16'383; // the registry's own limit

constexpr DWORD kMostTaken = 128;     // values; of a key with more each is asked for by name
constexpr DWORD kLargestTaken = 1024; // bytes; the ones above stay in the registry

struct TakenValue {
    SettingsInfo info;
    std::vector<std::byte> bytes; // as many as the size says, or none of a large value
};

/// Names as the registry compares them, without regard to case.
struct NamesInOrder {
    using is_transparent = void;
    bool operator()(std::u16string_view a, std::u16string_view b) const noexcept {
        return ::CompareStringOrdinal(reinterpret_cast<const wchar_t*>(a.data()), static_cast<int>(a.size()),
                                      reinterpret_cast<const wchar_t*>(b.data()), static_cast<int>(b.size()),
                                      TRUE) == CSTR_LESS_THAN;
    }
};
using TakenValues = std::map<std::u16string, TakenValue, NamesInOrder>;

/// When a key was written to last, and how many values it had then.
struct KeyState {
    DWORD values = 0;
    FILETIME written{};
};

std::optional<KeyState> stateOf(HKEY key) noexcept {
    KeyState state;
    if (::RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &state.values, nullptr, nullptr,
                           nullptr, &state.written) != ERROR_SUCCESS)
        return std::nullopt;
    return state;
}

/// The value with this number. `name` has room for the longest one, and holds it afterwards in its front.
std::optional<TakenValue> takeValue(HKEY key, DWORD index, std::u16string& name, DWORD& length) {
    auto* const nameBuffer = reinterpret_cast<wchar_t*>(name.data());
    std::array<std::byte, kLargestTaken> bytes; // NOLINT(cppcoreguidelines-pro-type-member-init): filled by the call
    length = static_cast<DWORD>(name.size());
    DWORD type = 0;
    DWORD size = kLargestTaken;
    LSTATUS status =
        ::RegEnumValueW(key, index, nameBuffer, &length, nullptr, &type, reinterpret_cast<BYTE*>(bytes.data()), &size);
    const bool isLarge = status == ERROR_MORE_DATA;
    if (isLarge) {
        length = static_cast<DWORD>(name.size());
        status = ::RegEnumValueW(key, index, nameBuffer, &length, nullptr, &type, nullptr, &size);
    }
    if (status != ERROR_SUCCESS) return std::nullopt;
    TakenValue value{{static_cast<SettingsType>(type), size}, {}};
    if (!isLarge) value.bytes.assign(bytes.begin(), bytes.begin() + size);
    return value;
}

/// All values of a key. Nothing when they are many, or the key was written to meanwhile: then one may have been missed.
std::optional<TakenValues> takeValues(HKEY key) {
    const std::optional<KeyState> before = stateOf(key);
    if (!before || before->values > kMostTaken) return std::nullopt;
    TakenValues values;
    std::u16string name(kLongestName + 1, u'\0');
    for (DWORD index = 0; index < before->values; ++index) {
        DWORD length = 0;
        std::optional<TakenValue> value = takeValue(key, index, name, length);
        if (!value) return std::nullopt;
        values.insert_or_assign(name.substr(0, length), std::move(*value));
    }
    const std::optional<KeyState> after = stateOf(key);
    if (!after || after->values != before->values || ::CompareFileTime(&after->written, &before->written) != 0)
        return std::nullopt;
    return values;
}

/// Reads ask for the values that are there in one go where they are few, not for each that may be there: every question
/// is a call of the system, and of another process through Wine.
class RegistryKey final : public SettingsKey {
  public:
    explicit RegistryKey(UniqueKey key) noexcept : key_(std::move(key)) {}

    [[nodiscard]] std::optional<SettingsInfo> describe(const std::u16string& name) const override {
        if (isTaken()) {
            const TakenValue* const value = findTaken(name);
            return value != nullptr ? std::optional(value->info) : std::nullopt;
        }
        DWORD type = 0;
        DWORD size = 0;
        if (::RegQueryValueExW(key_.get(), wide(name), nullptr, &type, nullptr, &size) != ERROR_SUCCESS)
            return std::nullopt;
        return SettingsInfo{static_cast<SettingsType>(type), size};
    }

    [[nodiscard]] std::optional<SettingsInfo> read(const std::u16string& name,
                                                   std::span<std::byte> buffer) const override {
        if (isTaken()) {
            const TakenValue* const value = findTaken(name);
            if (value == nullptr || value->info.size > buffer.size()) return std::nullopt;
            if (value->bytes.size() == value->info.size) {
                std::ranges::copy(value->bytes, buffer.begin());
                return value->info;
            }
        }
        BYTE none = 0; // no buffer at all would ask for the size only, and succeed
        BYTE* const bytes = buffer.empty() ? &none : reinterpret_cast<BYTE*>(buffer.data());
        DWORD type = 0;
        auto size = static_cast<DWORD>(std::min(buffer.size(), kLargestValue));
        if (::RegQueryValueExW(key_.get(), wide(name), nullptr, &type, bytes, &size) != ERROR_SUCCESS)
            return std::nullopt;
        return SettingsInfo{static_cast<SettingsType>(type), size};
    }

    [[nodiscard]] std::vector<std::u16string> names() const override {
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
    /// True when all values have been taken, by the first read.
    [[nodiscard]] bool isTaken() const {
        if (mayTake_) {
            taken_ = takeValues(key_.get());
            mayTake_ = false;
        }
        return taken_.has_value();
    }
    [[nodiscard]] const TakenValue* findTaken(const std::u16string& name) const {
        const auto found = taken_->find(std::u16string_view(name.c_str()));
        return found != taken_->end() ? &found->second : nullptr;
    }

    void write(const std::u16string& name, DWORD type, const void* bytes, std::size_t size) {
        taken_.reset(); // is no longer what the key holds
        mayTake_ = false;
        ::RegSetValueExW(key_.get(), wide(name), 0, type, static_cast<const BYTE*>(bytes), static_cast<DWORD>(size));
    }

    UniqueKey key_;
    mutable std::optional<TakenValues> taken_;
    mutable bool mayTake_ = true;
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

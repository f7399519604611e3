// CRegEx: the one way to the user's settings. Made for a batch of accesses and dropped after it.
#pragma once

#include "platform/platform.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace tallowmere {

inline constexpr char16_t kCoreKey[] = u"Software\\Tallowmere\\core";
inline constexpr char16_t kTrackKey[] = u"Software\\Tallowmere\\tallowmere\\settings";
inline constexpr char16_t kCalibrationKey[] = u"Software\\Tallowmere\\tallowmere\\calibration";

/// A holder of one settings key of the current user. Without an open key reads give their default and
/// writes do nothing. No failure is reported. One thread at a time.
class CRegEx {
  public:
    explicit CRegEx(platform::Platform& platform) noexcept : platform_(platform) {}
    virtual ~CRegEx() = default;
    CRegEx(const CRegEx&) = delete;
    CRegEx& operator=(const CRegEx&) = delete;

    /// Opens a key for reading and writing; never makes it. Replaces the key held before.
    void Open(const std::u16string& path) { key_ = platform_.openSettings(path); }
    /// Opens a key likewise, making it and its parents where missing.
    void Create(const std::u16string& path) { key_ = platform_.createSettings(path); }
    [[nodiscard]] bool isOpen() const noexcept { return key_ != nullptr; }

    /// The value when it is there with the right type, else empty. Right are a plain string of an even
    /// number of bytes (one terminator at its end is dropped, any further one kept), an integer of at most
    /// 4 bytes (a shorter one is extended with zeros), and exactly 8 binary bytes.
    [[nodiscard]] std::optional<std::u16string> findString(const std::u16string& name) const;
    [[nodiscard]] std::optional<std::int32_t> findDword(const std::u16string& name) const;
    [[nodiscard]] std::optional<double> findDouble(const std::u16string& name) const;
    /// An integer of exactly 4 bytes: a shorter one counts as missing.
    [[nodiscard]] std::optional<std::int32_t> findWholeDword(const std::u16string& name) const;

    /// The same with a default in place of "empty". A stored empty string is no reason for the default.
    [[nodiscard]] std::u16string QueryString(const std::u16string& name, const std::u16string& defaultText) const {
        return findString(name).value_or(defaultText);
    }
    [[nodiscard]] std::int32_t QueryDword(const std::u16string& name, std::int32_t defaultValue) const {
        return findDword(name).value_or(defaultValue);
    }
    [[nodiscard]] double QueryDouble(const std::u16string& name, double defaultValue) const {
        return findDouble(name).value_or(defaultValue);
    }

    void writeString(const std::u16string& name, const std::u16string& text);
    void writeDword(const std::u16string& name, std::uint32_t value);

  private:
    platform::Platform& platform_;
    std::unique_ptr<platform::SettingsKey> key_;
};

/// The name of a numbered value: prefix and index in decimal, without leading zeros ("Sys_v17").
[[nodiscard]] std::u16string indexedName(std::u16string_view prefix, std::size_t index);

} // namespace tallowmere

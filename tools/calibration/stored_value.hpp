// One value of the user's settings under a strict eye.
#pragma once

#include "tools/calibration/findings.hpp"

#include "platform/platform.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace tallowmere::tools {

/// Reads values of one key and reports those of another type or size than the library takes.
class StoredValues {
  public:
    StoredValues(const platform::Platform& platform, std::u16string key, Findings& findings)
        : key_(std::move(key)), settings_(platform.openSettings(key_)), findings_(findings) {}

    /// False when there is no key, and so no value.
    [[nodiscard]] bool isOpen() const noexcept { return settings_ != nullptr; }

    // Empty when there is no such value or the library ignores it.
    [[nodiscard]] std::optional<std::u16string> text(const std::u16string& name);
    [[nodiscard]] std::optional<double> number(const std::u16string& name);
    /// wholeOnly: a value shorter than 4 bytes is ignored, else it is extended with zeros.
    [[nodiscard]] std::optional<std::int32_t> integer(const std::u16string& name, bool wholeOnly = false);

    /// The names of all values of the key.
    [[nodiscard]] std::vector<std::u16string> names() const;

    void report(const std::u16string& name, std::string what, std::string effect);

  private:
    /// The value's size when its type is this.
    [[nodiscard]] std::optional<std::size_t> sizeOf(const std::u16string& name, platform::SettingsType type);

    std::u16string key_;
    std::unique_ptr<platform::SettingsKey> settings_;
    Findings& findings_;
};

} // namespace tallowmere::tools

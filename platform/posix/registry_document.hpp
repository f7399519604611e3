// A registry text as a whole: what its keys hold, and changes that leave everything else in place.
#pragma once

#include "platform/posix/registry_text.hpp"

#include <map>

namespace tallowmere::platform::posix {

struct RegistryValue {
    SettingsType type = SettingsType::None;
    std::vector<std::byte> bytes;
};
using RegistryValues = std::map<std::u16string, RegistryValue>; // by folded name

/// Paths are those below HKEY_CURRENT_USER. Lines count from the first to the last, as an import would take
/// them; lines that make no sense count for nothing, and stay.
class RegistryDocument {
  public:
    explicit RegistryDocument(std::string utf8 = {}) : text_(std::move(utf8)) {}

    [[nodiscard]] const std::string& text() const noexcept { return text_; }

    /// The values of a key; empty when there is no such key. The keys above a key are there with it.
    [[nodiscard]] std::optional<RegistryValues> values(std::u16string_view path) const;

    /// Adds a key without values at the end. False when it can't be written as a line.
    bool addKey(std::u16string_view path);
    /// Puts a value's line (without line end) in place of the one that counts, else behind the key's last
    /// one; makes the key where missing. False when the key or the line can't be written.
    bool setValue(std::u16string_view path, std::u16string_view name, const std::string& line);

  private:
    void startLine();

    std::string text_;
};

} // namespace tallowmere::platform::posix

// The text format in which registry editors export keys, line by line. Text is UTF-8 here.
//
//     [HKEY_CURRENT_USER\Software\Tallowmere\core]      a key; [-HKEY...] deletes it
//     "DataFolder"="C:\\Boat"                           a string; @ in place of the name is the default value
//     "Sys_b5"=dword:00000001
//     "Sys_v0"=hex:00,00,00,00,\                        binary, here going on in the next line
//       00,00,2f,40
//     "Other"=hex(7):41,00,00,00,00,00                  the bytes of a value of any type
//     "Gone"=-                                          deletes a value
#pragma once

#include "platform/platform.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallowmere::platform::posix {

/// Cuts a text into lines, each with its line end and with the lines that continue it.
class RegistryLines {
  public:
    explicit RegistryLines(std::string_view text) noexcept : rest_(text) {}
    /// The next line, a part of the text; empty at its end.
    [[nodiscard]] std::optional<std::string_view> next();

  private:
    std::string_view rest_;
};

struct RegistryKeyLine {
    bool deletes = false;
    bool currentUser = false; // below HKEY_CURRENT_USER (or HKCU)
    std::u16string path;      // what follows that root, folded
};

struct RegistryValueLine {
    std::u16string name; // folded; empty for the default value
    bool deletes = false;
    SettingsType type = SettingsType::None;
    std::vector<std::byte> bytes;
};

/// Empty when the line is no such line, or a malformed one.
[[nodiscard]] std::optional<RegistryKeyLine> readKeyLine(std::string_view line);
[[nodiscard]] std::optional<RegistryValueLine> readValueLine(std::string_view line);

/// Key and value names go without regard to the case of the letters A to Z; a path has no backslash at
/// either end.
[[nodiscard]] std::u16string foldName(std::u16string_view name);
[[nodiscard]] std::u16string foldPath(std::u16string_view path);

/// Lines without line end. A name that the format can't hold (one with a line end) gives an empty text.
[[nodiscard]] std::string writeKeyLine(std::u16string_view path);
[[nodiscard]] std::string writeStringLine(std::u16string_view name, std::u16string_view text);
[[nodiscard]] std::string writeDwordLine(std::u16string_view name, std::uint32_t value);

/// A file's bytes as UTF-8: those of a UTF-16 file with a byte-order mark converted, all others as they
/// are, less the mark.
[[nodiscard]] std::string decodeRegistryFile(std::string bytes);

} // namespace tallowmere::platform::posix

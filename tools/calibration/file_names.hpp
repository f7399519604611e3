// File names from the command line, which are UTF-8 on every platform.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tallowmere::tools {

/// Empty for what is no UTF-8.
[[nodiscard]] std::optional<std::u16string> wideFileName(std::string_view name);

/// Writes a file anew. False when that fails.
[[nodiscard]] bool writeWholeFile(const std::string& name, std::string_view bytes);

} // namespace tallowmere::tools

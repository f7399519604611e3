// Which calibration item the user means.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tallowmere::tools {

struct FoundItem {
    std::optional<std::size_t> id; // 0 to 19
    std::string error;             // why there is none, and what would be near
};

/// By number or by name; case, blanks and underscores do not matter. typed: UTF-8.
[[nodiscard]] FoundItem findItem(std::string_view typed);

} // namespace tallowmere::tools

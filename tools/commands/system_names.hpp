// The meaning of the system variables, integers and flags that the library itself uses, in words. All
// others belong to the programs and have no name here.
#pragma once

#include <cstddef>

namespace tallowmere::tools {

/// Empty for an index without a meaning of its own, whatever the index.
[[nodiscard]] const char* systemVariableName(std::size_t index) noexcept;
[[nodiscard]] const char* systemIntegerName(std::size_t index) noexcept;
[[nodiscard]] const char* systemFlagName(std::size_t index) noexcept;

} // namespace tallowmere::tools

// The shared section: a file in the runtime folder that lives as long as somebody holds it.
#pragma once

#include "platform/platform.hpp"

#include <memory>
#include <string_view>

namespace tallowmere::platform::posix {

[[nodiscard]] std::unique_ptr<SharedSection> openOrCreateSectionFile(std::u16string_view name, std::size_t bytes);
[[nodiscard]] std::unique_ptr<SharedSection> openSectionFile(std::u16string_view name, std::size_t bytes);

} // namespace tallowmere::platform::posix

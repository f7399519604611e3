// The shared section: a file in the runtime folder that lives as long as somebody holds it.
#pragma once

#include "platform/platform.hpp"

#include <cstdint>
#include <memory>
#include <string_view>

namespace tallowmere::platform::posix {

/// The byte of the file, far beyond its data, whose lock shows that somebody has the section open.
inline constexpr std::int64_t kLifeByte = std::int64_t{1} << 40;

[[nodiscard]] std::unique_ptr<SharedSection> openOrCreateSectionFile(std::u16string_view name, std::size_t bytes);
[[nodiscard]] std::unique_ptr<SharedSection> openSectionFile(std::u16string_view name, std::size_t bytes);
[[nodiscard]] std::unique_ptr<SectionLook> lookAtSectionFile(std::u16string_view name, std::size_t bytes);

} // namespace tallowmere::platform::posix

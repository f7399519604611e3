// The XML documents of the "config" folder, and what their readers have in common.
#pragma once

#include "core/channels/context.hpp"

#include <memory>
#include <string_view>

namespace tallowmere {

/// Opens a document of the "config" folder, past its first element. Null when the file is absent or its
/// first element has another name than `root`.
[[nodiscard]] std::unique_ptr<platform::XmlReader>
openConfigDocument(const Context& context, std::u16string_view fileName, std::u16string_view root);

/// Equal without regard to the case of the letters A to Z.
[[nodiscard]] bool equalsIgnoringCase(std::u16string_view a, std::u16string_view b) noexcept;

} // namespace tallowmere

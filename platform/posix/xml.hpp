// Elements of an XML document.
#pragma once

#include "platform/platform.hpp"

namespace tallowmere::platform::posix {

[[nodiscard]] std::unique_ptr<XmlReader> openXmlReader(const std::u16string& path);

} // namespace tallowmere::platform::posix

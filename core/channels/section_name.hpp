// What the shared section is called.
#pragma once

#include <string>

namespace tallowmere {

/// The name of the shared section: "ZanCore_%d_%zu" with the layout's number and size.
[[nodiscard]] std::u16string sectionName();

} // namespace tallowmere

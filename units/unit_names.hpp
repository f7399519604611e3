// Unit classes in words, with the unit that values are kept in. For people: tables and documents.
#pragma once

#include "core/channels/unit_class.hpp"

namespace tallowmere {

struct UnitName {
    const char* words;    // "boat speed"
    const char* baseUnit; // "kt"; empty when the class has none
};

/// A class that is in no table counts as a plain number, as the value store treats it.
[[nodiscard]] UnitName unitNameOf(UnitClass unitClass) noexcept;

} // namespace tallowmere

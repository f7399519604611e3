// Which precisions channels.xml may set.
#pragma once

#include "core/channels/unit_class.hpp"

#include <cstdint>

namespace tallowmere {

inline constexpr std::int32_t kLargestPrecision = 254;

/// True for the classes whose values are not shown with a number of decimals; they take no precision.
[[nodiscard]] constexpr bool hasOwnFormat(UnitClass unitClass) noexcept {
    switch (unitClass) {
    case UnitClass::DateTime:
    case UnitClass::TimeSpan:
    case UnitClass::Latitude:
    case UnitClass::Longitude:
    case UnitClass::IntegerCode:
        return true;
    default:
        return false;
    }
}

} // namespace tallowmere

// Quantities that sentences give in several units side by side: the first one that is there counts.
#pragma once

#include "tools/nmea/field.hpp"

#include <cstddef>
#include <optional>

namespace tallowmere::feed {

/// A wish for a field: its number, the letter of its unit in the field behind it, and the factor to the
/// channel's unit.
struct UnitField {
    std::size_t index;
    char unit;
    double factor;
};

template <std::size_t Count>
[[nodiscard]] std::optional<double> firstOf(const nmea::Sentence& sentence, const UnitField (&fields)[Count]) {
    for (const UnitField& field : fields)
        if (const auto value = nmea::numberIn(sentence, field.index, field.unit)) return *value * field.factor;
    return std::nullopt;
}

} // namespace tallowmere::feed

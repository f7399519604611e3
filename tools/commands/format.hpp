// Values as text, in base units.
//
// All of it holds for any bits that may stand in the section: every conversion to an integer is guarded
// and every text has a bounded length.
#pragma once

#include "core/channels/unit_class.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace tallowmere::tools {

inline constexpr char kNoValueText[] = "-";

/// A number with so many decimals, at most 12; ten significant digits for a count above 254, which is how
/// the section says "none". Numbers of 1e15 and more come with an exponent. "nan", "inf", "-inf".
[[nodiscard]] std::string formatNumber(double value, unsigned decimals);

/// Degrees and decimal minutes: 50°45.960'N, 001°18.300'W. Beyond 1000 degrees as a plain number.
[[nodiscard]] std::string formatLatitude(double degrees);
[[nodiscard]] std::string formatLongitude(double degrees);

/// A number of a channel of this class. Decimals as for formatNumber; a distance to a line shows at least
/// three, because catalogue and settings mean metres or boat lengths there, not nautical miles.
[[nodiscard]] std::string formatQuantity(UnitClass unitClass, double value, unsigned decimals);

/// A moment (100 ns since 1601-01-01 UTC) as 2025-11-21T12:34:56Z, to the nearest second.
[[nodiscard]] std::string formatMoment(std::int64_t ticks);

/// The same with tenths of a second, cut.
[[nodiscard]] std::string formatMomentTenths(std::int64_t ticks);

/// The same with all seven decimals.
[[nodiscard]] std::string formatMomentTicks(std::int64_t ticks);

/// A time span (100 ns) as [-]h:mm:ss, with tenths of a second when there are some.
[[nodiscard]] std::string formatSpan(std::int64_t ticks);

/// The age of a value: "0.3 s", "14 s", "12 min", "5 h", "3 d"; "-" when it isn't known.
[[nodiscard]] std::string formatAge(std::optional<double> seconds);

} // namespace tallowmere::tools

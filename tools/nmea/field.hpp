// What the text of a field says. An empty, damaged or impossible field is absent, never zero.
#pragma once

#include "tools/nmea/sentence.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tallowmere::nmea {

/// A decimal number: sign, digits, one point. No exponent, no "nan", no "inf", at most 20 characters; so it is
/// finite, and never above 1e20.
[[nodiscard]] std::optional<double> number(std::string_view text) noexcept;

/// Digits only, at most nine.
[[nodiscard]] std::optional<std::uint32_t> wholeNumber(std::string_view text) noexcept;

/// A number whose unit stands in the field behind it. Absent when another unit stands there; devices that
/// leave the unit out are believed.
[[nodiscard]] std::optional<double> numberIn(const Sentence& sentence, std::size_t index, char unit) noexcept;

/// An amount with a direction in the field behind it ("15.0,E"): negative when that is `negative`, absent
/// when it is neither of the two.
[[nodiscard]] std::optional<double> directed(const Sentence& sentence, std::size_t index, char positive,
                                             char negative) noexcept;

/// Degrees, north and east positive. Both or nothing: a position with half of it damaged is none.
struct Position {
    double latitude;  // -90 to 90
    double longitude; // -180 to 180
};

/// Four fields: ddmm.mmm, N or S, dddmm.mmm, E or W.
[[nodiscard]] std::optional<Position> position(const Sentence& sentence, std::size_t index) noexcept;

/// hhmmss or hhmmss.sss: seconds since midnight, a leap second included (below 86401).
[[nodiscard]] std::optional<double> timeOfDay(std::string_view text) noexcept;

/// Midnight at the start of a day, in days since 1899-12-30; absent when there is no such day.
[[nodiscard]] std::optional<double> dayNumber(std::uint32_t year, std::uint32_t month, std::uint32_t day) noexcept;

/// ddmmyy as a day number; years 80 to 99 belong to the last century.
[[nodiscard]] std::optional<double> dateOf(std::string_view text) noexcept;

} // namespace tallowmere::nmea

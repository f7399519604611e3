// Making sentences: the reverse of reading them.
#pragma once

#include "tools/nmea/ais.hpp"

#include <string>
#include <string_view>

namespace tallowmere::nmea {

/// Start, body, '*', checksum in two digits, carriage return and line feed.
[[nodiscard]] std::string makeLine(char start, std::string_view body);

/// A number with a fixed count of decimals (0 to 6), at least `width` characters with leading zeros. Empty
/// text for a number that isn't finite or is beyond 1e9 either way.
[[nodiscard]] std::string decimal(double value, int decimals, int width = 0);

/// "ddmm.mmmm,N" and "dddmm.mmmm,E" for degrees -90 to 90 and -180 to 180; two empty fields beyond.
[[nodiscard]] std::string latitudeFields(double degrees);
[[nodiscard]] std::string longitudeFields(double degrees);

/// A whole VDM line, one sentence, heard on radio channel 'A' or 'B'.
[[nodiscard]] std::string makeVdm(const PositionReport& report, char radioChannel);

} // namespace tallowmere::nmea

#include "tools/nmea/encode.hpp"

#include "tools/nmea/line_reading.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace tallowmere::nmea {
namespace {

std::string angleFields(double degrees, double most, int degreeDigits, char positive, char negative) {
    if (!(std::abs(degrees) <= most)) return ",";
    // In whole ten-thousandths of a minute, so that rounding never writes 60 minutes.
    const long long units = std::llround(std::abs(degrees) * 600'000.0);
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%0*lld%02lld.%04lld,%c", degreeDigits, units / 600'000,
                  units % 600'000 / 10'000, units % 10'000, std::signbit(degrees) ? negative : positive);
    return text.data();
}

} // namespace

std::string makeLine(char start, std::string_view body) {
    std::array<char, 8> end{};
    std::snprintf(end.data(), end.size(), "*%02X\r\n", static_cast<unsigned>(checksumOf(body)));
    std::string line(1, start);
    line.append(body).append(end.data());
    return line;
}

std::string decimal(double value, int decimals, int width) {
    if (!(std::abs(value) <= 1e9)) return {};
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%0*.*f", std::clamp(width, 0, 20), std::clamp(decimals, 0, 6), value);
    return text.data();
}

std::string latitudeFields(double degrees) {
    return angleFields(degrees, 90.0, 2, 'N', 'S');
}

std::string longitudeFields(double degrees) {
    return angleFields(degrees, 180.0, 3, 'E', 'W');
}

std::string makeVdm(const PositionReport& report, char radioChannel) {
    std::string body = "AIVDM,1,1,,";
    body += radioChannel;
    body += ',';
    body += encodePayload(report);
    body += ",0";
    return makeLine('!', body);
}

} // namespace tallowmere::nmea

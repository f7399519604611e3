// Where the numbers of a position report stand: first bit and width, from bit 0 at the front of the message.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tallowmere::nmea::ais {

struct Bits {
    std::size_t first;
    std::size_t width;
};

inline constexpr std::size_t kReportBits = 168; // of types 1, 2, 3 and 18 alike
inline constexpr Bits kType{0, 6};
inline constexpr Bits kMmsi{8, 30};

struct Layout {
    Bits sog;       // 0.1 kn
    Bits longitude; // 1/10000 minute, two's complement
    Bits latitude;
    Bits cog;     // 0.1 degree
    Bits heading; // degree
    Bits second;
};
inline constexpr Layout kClassA{{50, 10}, {61, 28}, {89, 27}, {116, 12}, {128, 9}, {137, 6}};
inline constexpr Layout kClassB{{46, 10}, {57, 28}, {85, 27}, {112, 12}, {124, 9}, {133, 6}};

/// The layout of a message type, or null when the type is no position report that is read here.
[[nodiscard]] constexpr const Layout* layoutOf(int type) noexcept {
    if (type >= 1 && type <= 3) return &kClassA;
    return type == 18 ? &kClassB : nullptr;
}

inline constexpr std::uint32_t kNoSog = 1023;
inline constexpr std::uint32_t kNoCog = 3600;
inline constexpr std::uint32_t kNoHeading = 511;
inline constexpr double kUnitsADegree = 600'000.0;
inline constexpr std::int32_t kNoLongitude = 181 * 600'000;
inline constexpr std::int32_t kNoLatitude = 91 * 600'000;

} // namespace tallowmere::nmea::ais

#include "tools/nmea/ais.hpp"
#include "tools/nmea/ais_layout.hpp"

#include <array>
#include <cmath>

namespace tallowmere::nmea {
namespace {

class BitWriter {
  public:
    void put(ais::Bits bits, std::int64_t value) noexcept {
        for (std::size_t bit = 0; bit < bits.width; ++bit)
            bits_[bits.first + bits.width - 1 - bit] = (value >> bit & 1) != 0;
    }

    [[nodiscard]] std::string payload() const {
        std::string text;
        for (std::size_t first = 0; first < bits_.size(); first += 6) {
            int six = 0;
            for (std::size_t bit = 0; bit < 6; ++bit) six = six * 2 + (bits_[first + bit] ? 1 : 0);
            text += static_cast<char>('0' + (six < 40 ? six : six + 8));
        }
        return text;
    }

  private:
    std::array<bool, ais::kReportBits> bits_{};
};

/// `value` in units of 1/`scale`, from 0 to below `limit`; `none` when it is absent or beyond.
std::int64_t scaled(std::optional<double> value, double scale, std::int64_t limit, std::int64_t none) noexcept {
    if (!value || !(*value >= 0.0) || !(*value * scale < static_cast<double>(limit) - 0.5)) return none;
    return std::llround(*value * scale);
}

std::int64_t coordinate(std::optional<double> degrees, double most, std::int64_t none) noexcept {
    if (!degrees || !(std::abs(*degrees) <= most)) return none;
    return std::llround(*degrees * ais::kUnitsADegree);
}

} // namespace

std::string encodePayload(const PositionReport& report) {
    BitWriter bits;
    const ais::Layout& layout = report.type == 18 ? ais::kClassB : ais::kClassA;
    bits.put(ais::kType, report.type);
    bits.put(ais::kMmsi, report.mmsi);
    bits.put(layout.sog, scaled(report.sog, 10.0, ais::kNoSog, ais::kNoSog));
    bits.put(layout.cog, scaled(report.cog, 10.0, ais::kNoCog, ais::kNoCog));
    bits.put(layout.heading, scaled(report.heading, 1.0, 360, ais::kNoHeading));
    bits.put(layout.longitude, coordinate(report.longitude, 180.0, ais::kNoLongitude));
    bits.put(layout.latitude, coordinate(report.latitude, 90.0, ais::kNoLatitude));
    bits.put(layout.second, report.second < 60 ? report.second : 60);
    return bits.payload();
}

} // namespace tallowmere::nmea

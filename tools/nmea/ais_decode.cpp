#include "tools/nmea/ais.hpp"
#include "tools/nmea/ais_layout.hpp"
#include "tools/nmea/field.hpp"

#include <algorithm>
#include <cstdlib>

namespace tallowmere::nmea {
namespace {

/// The 6 bits of a payload character, or -1. 40 characters from '0' on, a gap of eight, 24 more.
int sixBitsOf(char character) noexcept {
    if (character >= '0' && character <= 'W') return character - '0';
    if (character >= '`' && character <= 'w') return character - '0' - 8;
    return -1;
}

/// A payload seen as a row of bits. Bits behind its end read as 0.
class BitRow {
  public:
    explicit BitRow(std::string_view payload) noexcept : payload_(payload) {}

    [[nodiscard]] std::uint32_t number(ais::Bits bits) const noexcept {
        std::uint32_t value = 0;
        for (std::size_t bit = bits.first; bit < bits.first + bits.width; ++bit) value = value << 1 | at(bit);
        return value;
    }

    [[nodiscard]] std::int32_t signedNumber(ais::Bits bits) const noexcept {
        const auto half = static_cast<std::int64_t>(1) << (bits.width - 1);
        const std::int64_t value = number(bits);
        return static_cast<std::int32_t>(value < half ? value : value - 2 * half);
    }

  private:
    [[nodiscard]] std::uint32_t at(std::size_t bit) const noexcept {
        if (bit / 6 >= payload_.size()) return 0;
        return static_cast<std::uint32_t>(sixBitsOf(payload_[bit / 6])) >> (5 - bit % 6) & 1U;
    }

    std::string_view payload_;
};

PositionReport reportOf(const BitRow& bits, int type, const ais::Layout& layout) noexcept {
    PositionReport report{.type = type, .mmsi = bits.number(ais::kMmsi)};
    const std::uint32_t sog = bits.number(layout.sog);
    if (sog != ais::kNoSog) report.sog = sog / 10.0;
    const std::uint32_t cog = bits.number(layout.cog);
    if (cog < ais::kNoCog) report.cog = cog / 10.0;
    const std::uint32_t heading = bits.number(layout.heading);
    if (heading < 360) report.heading = heading; // 511 says that there is none, 360 to 510 have no meaning
    const double longitude = bits.signedNumber(layout.longitude) / ais::kUnitsADegree;
    const double latitude = bits.signedNumber(layout.latitude) / ais::kUnitsADegree;
    if (std::abs(longitude) <= 180.0 && std::abs(latitude) <= 90.0) { // 181 and 91 say that there is none
        report.longitude = longitude;
        report.latitude = latitude;
    }
    report.second = bits.number(layout.second);
    return report;
}

} // namespace

AisReading readPayload(std::string_view payload, unsigned fillBits) noexcept {
    if (payload.empty() || fillBits > 5) return {};
    if (!std::all_of(payload.begin(), payload.end(), [](char character) { return sixBitsOf(character) >= 0; }))
        return {};
    const BitRow bits(payload);
    const int type = static_cast<int>(bits.number(ais::kType));
    const ais::Layout* const layout = ais::layoutOf(type);
    if (layout == nullptr) return {AisOutcome::OtherType, type};
    if (payload.size() * 6 - fillBits < ais::kReportBits) return {AisOutcome::Damaged, type};
    const PositionReport report = reportOf(bits, type, *layout);
    if (report.mmsi == 0 || report.mmsi > kLargestMmsi) return {AisOutcome::Damaged, type};
    return {AisOutcome::Report, type, report};
}

AisReading readVdm(const Sentence& sentence) noexcept {
    const auto parts = wholeNumber(sentence.field(0));
    const auto part = wholeNumber(sentence.field(1));
    const auto fillBits = wholeNumber(sentence.field(5));
    if (!parts || !part || *part < 1 || *part > *parts || !fillBits) return {};
    if (*part > 1) return {AisOutcome::Continuation};
    AisReading reading = readPayload(sentence.field(4), *fillBits);
    // A position report never needs a second sentence; one that claims so is of another make.
    if (*parts > 1 && reading.outcome != AisOutcome::OtherType) reading.outcome = AisOutcome::Damaged;
    return reading;
}

} // namespace tallowmere::nmea

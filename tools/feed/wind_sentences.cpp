#include "tools/feed/field_units.hpp"
#include "tools/feed/sentence_rules.hpp"
#include "tools/feed/unit_factors.hpp"

#include "tools/nmea/field.hpp"

namespace tallowmere::feed {

using nmea::Sentence;

namespace {

constexpr double kKnotsPerKilometrePerHour = 1.0 / kKilometresPerNauticalMile;

/// A speed with the letter of its unit behind it: N knots, K km/h, M m/s, S statute miles an hour.
std::optional<double> windSpeed(const Sentence& sentence, std::size_t index) {
    const auto speed = nmea::number(sentence.field(index));
    const std::string_view unit = sentence.field(index + 1);
    if (!speed) return std::nullopt;
    if (unit == "N") return speed;
    if (unit == "K") return *speed * kKnotsPerKilometrePerHour;
    if (unit == "M") return *speed * kKnotsPerMetrePerSecond;
    if (unit == "S") return *speed * kKilometresPerStatuteMile * kKnotsPerKilometrePerHour;
    return std::nullopt;
}

/// angle 0 to 180, L or R, speed, N, speed, M, speed, K
void applySidedWind(const Sentence& sentence, OwnBoat& boat, ChannelIndex angle, ChannelIndex speed) {
    boat.set(angle, nmea::directed(sentence, 0, 'R', 'L'));
    boat.set(speed, firstOf(sentence,
                            {{2, 'N', 1.0}, {4, 'M', kKnotsPerMetrePerSecond}, {6, 'K', kKnotsPerKilometrePerHour}}));
}

} // namespace

/// angle 0 to 360 off the bow, R (apparent) or T (true), speed, its unit, status
bool applyMwv(const Sentence& sentence, OwnBoat& boat) {
    if (!statusIsValid(sentence.field(4))) return false;
    const std::string_view reference = sentence.field(1);
    if (reference != "R" && reference != "T") return true;
    const bool apparent = reference == "R";
    boat.setWindAngle(apparent ? ZAN_AWA : ZAN_TWA, nmea::number(sentence.field(0)));
    boat.set(apparent ? ZAN_AWS : ZAN_TWS, windSpeed(sentence, 2));
    return true;
}

bool applyVwr(const Sentence& sentence, OwnBoat& boat) {
    applySidedWind(sentence, boat, ZAN_AWA, ZAN_AWS);
    return true;
}

bool applyVwt(const Sentence& sentence, OwnBoat& boat) {
    applySidedWind(sentence, boat, ZAN_TWA, ZAN_TWS);
    return true;
}

/// direction, T, direction, M, speed, N, speed, M
bool applyMwd(const Sentence& sentence, OwnBoat& boat) {
    auto direction = nmea::numberIn(sentence, 0, 'T');
    if (!direction) direction = boat.trueFromMagnetic(nmea::numberIn(sentence, 2, 'M'));
    boat.set(ZAN_TWD, direction);
    boat.set(ZAN_TWS, firstOf(sentence, {{4, 'N', 1.0}, {6, 'M', kKnotsPerMetrePerSecond}}));
    return true;
}

} // namespace tallowmere::feed

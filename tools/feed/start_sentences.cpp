// The simulator's own sentences, by which a start travels with the instruments' through a file or a pipe.
#include "tools/feed/sentence_rules.hpp"
#include "tools/feed/unit_factors.hpp"

#include "tools/nmea/field.hpp"

namespace tallowmere::feed {

using nmea::Sentence;

namespace {

void setPlace(const Sentence& sentence, std::size_t index, ChannelIndex latitude, ChannelIndex longitude,
              OwnBoat& boat) {
    const auto position = nmea::position(sentence, index);
    if (!position) return;
    boat.set(latitude, position->latitude);
    boat.set(longitude, position->longitude);
}

void setScaled(ChannelIndex channel, std::optional<double> value, double factor, OwnBoat& boat) {
    if (value) boat.set(channel, *value * factor);
}

} // namespace

/// port end: latitude (2), longitude (2); starboard end likewise; wind that is square to the line, true
bool applyStartLine(const Sentence& sentence, OwnBoat& boat) {
    setPlace(sentence, 0, ZAN_PORT_LAT, ZAN_PORT_LON, boat);
    setPlace(sentence, 4, ZAN_STBD_LAT, ZAN_STBD_LON, boat);
    boat.set(ZAN_LNSQWIND, nmea::number(sentence.field(8)));
    return true;
}

/// seconds to the gun, to the line, to burn; metres below the line, to the line, below it at the gun; bias in degrees,
/// in metres
bool applyStartTimes(const Sentence& sentence, OwnBoat& boat) {
    struct Row {
        ChannelIndex channel;
        double factor;
    };
    constexpr double kDays = 1.0 / 86'400.0;
    constexpr double kMiles = 1.0 / kMetresPerNauticalMile;
    constexpr Row rows[] = {{ZAN_TMTOGUN, kDays},   {ZAN_TMTOLN, kDays},    {ZAN_BURN, kDays},   {ZAN_BELOWLN, kMiles},
                            {ZAN_DISTTOLN, kMiles}, {ZAN_GUNBLWLN, kMiles}, {ZAN_BIAS_ANG, 1.0}, {ZAN_BIASL, kMiles}};
    for (std::size_t index = 0; index < std::size(rows); ++index)
        setScaled(rows[index].channel, nmea::number(sentence.field(index)), rows[index].factor, boat);
    return true;
}

} // namespace tallowmere::feed

#include "tools/feed/field_units.hpp"
#include "tools/feed/sentence_rules.hpp"
#include "tools/feed/unit_factors.hpp"

#include "tools/nmea/field.hpp"

namespace tallowmere::feed {

using nmea::Sentence;

/// heading, T, heading, M, speed, N, speed, K
bool applyVhw(const Sentence& sentence, OwnBoat& boat) {
    auto heading = nmea::numberIn(sentence, 0, 'T');
    if (!heading) heading = boat.trueFromMagnetic(nmea::numberIn(sentence, 2, 'M'));
    boat.set(ZAN_HDG, heading);
    boat.set(ZAN_BSP, firstOf(sentence, {{4, 'N', 1.0}, {6, 'K', 1.0 / kKilometresPerNauticalMile}}));
    return true;
}

/// total through the water, N, since reset, N, and from newer devices the same over the ground
bool applyVlw(const Sentence& sentence, OwnBoat& boat) {
    boat.set(ZAN_LOG_BSP, nmea::numberIn(sentence, 0, 'N'));
    boat.set(ZAN_TRIPLOG, nmea::numberIn(sentence, 2, 'N'));
    boat.set(ZAN_LOG_SOG, nmea::numberIn(sentence, 4, 'N'));
    return true;
}

/// depth, f, depth, M, depth, F
bool applyDbt(const Sentence& sentence, OwnBoat& boat) {
    boat.set(ZAN_DEPTH, firstOf(sentence, {{2, 'M', 1.0}, {0, 'f', kMetresPerFoot}, {4, 'F', kMetresPerFathom}}));
    return true;
}

/// depth below the transducer m, offset m (up to the surface positive, down to the keel negative)
bool applyDpt(const Sentence& sentence, OwnBoat& boat) {
    const auto depth = nmea::number(sentence.field(0));
    if (depth) boat.set(ZAN_DEPTH, *depth + nmea::number(sentence.field(1)).value_or(0.0));
    return true;
}

/// temperature, C
bool applyMtw(const Sentence& sentence, OwnBoat& boat) {
    auto temperature = nmea::numberIn(sentence, 0, 'C');
    if (!temperature) {
        temperature = nmea::numberIn(sentence, 0, 'F');
        if (temperature) temperature = celsiusFromFahrenheit(*temperature);
    }
    boat.set(ZAN_SEATEMP, temperature);
    return true;
}

} // namespace tallowmere::feed

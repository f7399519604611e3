#include "tools/feed/sentence_rules.hpp"

#include "tools/nmea/field.hpp"

namespace tallowmere::feed {

using nmea::Sentence;

/// sensor's heading, deviation (2), variation (2)
bool applyHdg(const Sentence& sentence, OwnBoat& boat) {
    boat.learnVariation(nmea::directed(sentence, 3, 'E', 'W'));
    auto heading = nmea::number(sentence.field(0));
    const auto deviation = nmea::directed(sentence, 1, 'E', 'W');
    if (heading && deviation) {
        heading = *heading + *deviation;
        if (*heading < 0.0) heading = *heading + 360.0;
        if (*heading >= 360.0) heading = *heading - 360.0;
    }
    boat.set(ZAN_HDG, boat.trueFromMagnetic(heading));
    return true;
}

/// heading, M
bool applyHdm(const Sentence& sentence, OwnBoat& boat) {
    boat.set(ZAN_HDG, boat.trueFromMagnetic(nmea::numberIn(sentence, 0, 'M')));
    return true;
}

/// heading, T
bool applyHdt(const Sentence& sentence, OwnBoat& boat) {
    boat.set(ZAN_HDG, nmea::numberIn(sentence, 0, 'T'));
    return true;
}

/// degrees a minute to starboard, status
bool applyRot(const Sentence& sentence, OwnBoat& boat) {
    if (!statusIsValid(sentence.field(1))) return false;
    const auto perMinute = nmea::number(sentence.field(0));
    if (perMinute) boat.set(ZAN_ROT, *perMinute / 60.0);
    return true;
}

/// starboard or only rudder, status, port rudder, status
bool applyRsa(const Sentence& sentence, OwnBoat& boat) {
    std::optional<double> starboard;
    std::optional<double> port;
    if (statusIsValid(sentence.field(1))) starboard = nmea::number(sentence.field(0));
    if (statusIsValid(sentence.field(3))) port = nmea::number(sentence.field(2));
    if (starboard && port) {
        boat.set(ZAN_RUDDERS, starboard);
        boat.set(ZAN_RUDDERP, port);
        return true;
    }
    boat.set(ZAN_RUDDER, starboard ? starboard : port);
    return starboard || port || statusIsValid(sentence.field(1)) || statusIsValid(sentence.field(3));
}

} // namespace tallowmere::feed

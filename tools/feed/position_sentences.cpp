#include "tools/feed/field_units.hpp"
#include "tools/feed/sentence_rules.hpp"
#include "tools/feed/unit_factors.hpp"

#include "tools/nmea/field.hpp"

namespace tallowmere::feed {

using nmea::Sentence;

namespace {

void setPosition(const Sentence& sentence, std::size_t index, OwnBoat& boat) {
    const auto position = nmea::position(sentence, index);
    if (!position) return;
    boat.set(ZAN_LAT, position->latitude);
    boat.set(ZAN_LON, position->longitude);
}

void setGpsTime(std::optional<double> day, std::optional<double> secondOfDay, OwnBoat& boat) {
    constexpr double kSecondsPerDay = 86'400.0;
    if (day && secondOfDay) boat.set(ZAN_GPS_TIME, *day + *secondOfDay / kSecondsPerDay);
}

} // namespace

/// time, status, latitude (2), longitude (2), speed kn, course true, date, variation (2), mode
bool applyRmc(const Sentence& sentence, OwnBoat& boat) {
    if (!statusIsValid(sentence.field(1)) || !modeIsValid(sentence.field(11))) return false;
    setGpsTime(nmea::dateOf(sentence.field(8)), nmea::timeOfDay(sentence.field(0)), boat);
    setPosition(sentence, 2, boat);
    boat.set(ZAN_SOG, nmea::number(sentence.field(6)));
    boat.set(ZAN_COG, nmea::number(sentence.field(7)));
    boat.learnVariation(nmea::directed(sentence, 9, 'E', 'W'));
    return true;
}

/// time, latitude (2), longitude (2), quality, satellites, HDOP, altitude, M, geoid's height, M, age of the
/// correction s, its station
bool applyGga(const Sentence& sentence, OwnBoat& boat) {
    const auto quality = nmea::wholeNumber(sentence.field(5));
    if (!quality || *quality == 0) return false;
    setPosition(sentence, 1, boat);
    boat.set(ZAN_GPSMETHOD, *quality);
    boat.set(ZAN_GPSNUM, nmea::wholeNumber(sentence.field(6)));
    boat.set(ZAN_HDOP, nmea::number(sentence.field(7)));
    boat.set(ZAN_ALTITUDE, nmea::numberIn(sentence, 8, 'M'));
    boat.set(ZAN_GEOSEP, nmea::numberIn(sentence, 10, 'M'));
    boat.set(ZAN_GPSAGE, nmea::number(sentence.field(12)));
    boat.set(ZAN_DIFFSTN, nmea::wholeNumber(sentence.field(13)));
    return true;
}

/// latitude (2), longitude (2), time, status, mode
bool applyGll(const Sentence& sentence, OwnBoat& boat) {
    if (!statusIsValid(sentence.field(5)) || !modeIsValid(sentence.field(6))) return false;
    setPosition(sentence, 0, boat);
    return true;
}

/// course, T, course, M, speed, N, speed, K, mode
bool applyVtg(const Sentence& sentence, OwnBoat& boat) {
    if (!modeIsValid(sentence.field(8))) return false;
    auto course = nmea::numberIn(sentence, 0, 'T');
    if (!course) course = boat.trueFromMagnetic(nmea::numberIn(sentence, 2, 'M'));
    boat.set(ZAN_COG, course);
    boat.set(ZAN_SOG, firstOf(sentence, {{4, 'N', 1.0}, {6, 'K', 1.0 / kKilometresPerNauticalMile}}));
    return true;
}

/// time, day, month, year, zone (2, not needed: the time is UTC)
bool applyZda(const Sentence& sentence, OwnBoat& boat) {
    const auto day = nmea::wholeNumber(sentence.field(1));
    const auto month = nmea::wholeNumber(sentence.field(2));
    const auto year = nmea::wholeNumber(sentence.field(3));
    if (day && month && year)
        setGpsTime(nmea::dayNumber(*year, *month, *day), nmea::timeOfDay(sentence.field(0)), boat);
    return true;
}

} // namespace tallowmere::feed

#include "tools/feed/field_units.hpp"
#include "tools/feed/sentence_rules.hpp"
#include "tools/feed/unit_factors.hpp"

#include "tools/nmea/field.hpp"

#include <algorithm>
#include <initializer_list>

namespace tallowmere::feed {

using nmea::Sentence;

namespace {

bool sameWord(std::string_view text, std::string_view upperCase) {
    return std::equal(text.begin(), text.end(), upperCase.begin(), upperCase.end(), [](char left, char right) {
        return (left >= 'a' && left <= 'z' ? static_cast<char>(left - 'a' + 'A') : left) == right;
    });
}

/// True for a transducer's name that is one of the words, in any case, with or without a number behind it.
bool isNamed(std::string_view name, std::initializer_list<std::string_view> words) {
    const std::size_t last = name.find_last_not_of("0123456789#_ ");
    name = name.substr(0, last == std::string_view::npos ? 0 : last + 1);
    return std::any_of(words.begin(), words.end(), [name](std::string_view word) { return sameWord(name, word); });
}

/// Angles: heel to starboard and bow up are positive, in the sentence as in the channels.
void applyAngle(std::optional<double> degrees, std::string_view name, OwnBoat& boat) {
    if (isNamed(name, {"HEEL", "ROLL"})) boat.set(ZAN_HEEL, degrees);
    if (isNamed(name, {"TRIM", "PITCH", "PTCH"})) boat.set(ZAN_TRIM, degrees);
}

/// Only pressures named as the air's: engines and tanks send theirs in the same way.
void applyPressure(std::optional<double> pressure, std::string_view unit, std::string_view name, OwnBoat& boat) {
    if (!pressure || !isNamed(name, {"BARO", "BAROMETER", "AIRPRESSURE", "AIRPRESS", "PRESS", "PRESSURE", "ATMOS"}))
        return;
    if (unit == "B") boat.set(ZAN_BARO, *pressure * kMillibarsPerBar);
    if (unit == "P") boat.set(ZAN_BARO, *pressure * kMillibarsPerPascal);
}

} // namespace

/// pressure, I, pressure, B, air temperature, C, water temperature, C, relative humidity, absolute humidity,
/// dew point, C, wind direction, T, wind direction, M, wind speed, N, wind speed, M
bool applyMda(const Sentence& sentence, OwnBoat& boat) {
    boat.set(ZAN_BARO, firstOf(sentence, {{2, 'B', kMillibarsPerBar}, {0, 'I', kMillibarsPerInchOfMercury}}));
    boat.set(ZAN_AIRTEMP, nmea::numberIn(sentence, 4, 'C'));
    boat.set(ZAN_SEATEMP, nmea::numberIn(sentence, 6, 'C'));
    boat.set(ZAN_RH, nmea::number(sentence.field(8)));
    boat.set(ZAN_DEWPT, nmea::numberIn(sentence, 10, 'C'));
    auto direction = nmea::numberIn(sentence, 12, 'T');
    if (!direction) direction = boat.trueFromMagnetic(nmea::numberIn(sentence, 14, 'M'));
    boat.set(ZAN_TWD, direction);
    boat.set(ZAN_TWS, firstOf(sentence, {{16, 'N', 1.0}, {18, 'M', kKnotsPerMetrePerSecond}}));
    return true;
}

/// Any number of groups of four: kind of transducer, value, unit, name.
bool applyXdr(const Sentence& sentence, OwnBoat& boat) {
    for (std::size_t first = 0; first < sentence.fieldCount(); first += 4) {
        const std::string_view kind = sentence.field(first);
        const std::string_view unit = sentence.field(first + 2);
        const auto value = nmea::number(sentence.field(first + 1));
        if (kind == "A" && unit == "D") applyAngle(value, sentence.field(first + 3), boat);
        if (kind == "P") applyPressure(value, unit, sentence.field(first + 3), boat);
    }
    return true;
}

} // namespace tallowmere::feed

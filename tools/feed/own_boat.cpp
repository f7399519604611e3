#include "tools/feed/own_boat.hpp"

#include "tools/feed/plausible.hpp"

#include <cmath>

namespace tallowmere::feed {

void writeValue(ChannelSink& sink, FeedCounts& counts, ChannelIndex channel, std::optional<double> value,
                BoatIndex boat) {
    if (!value) return;
    if (!isPlausible(channel, *value))
        ++counts.implausible;
    else if (sink.write(channel, *value, boat))
        ++counts.written;
    else
        ++counts.refused;
}

void OwnBoat::set(ChannelIndex channel, std::optional<double> value) {
    writeValue(sink_, counts_, channel, value, 0);
}

void OwnBoat::setWindAngle(ChannelIndex channel, std::optional<double> degrees) {
    if (degrees && *degrees > 180.0) degrees = *degrees - 360.0;
    set(channel, degrees);
}

void OwnBoat::learnVariation(std::optional<double> degrees) {
    set(ZAN_MAGVAR, degrees);
    if (degrees && isPlausible(ZAN_MAGVAR, *degrees)) variation_ = degrees;
}

std::optional<double> OwnBoat::trueFromMagnetic(std::optional<double> degrees) {
    if (!degrees) return std::nullopt;
    std::optional<double> variation = variation_;
    if (!variation) variation = sink_.read(ZAN_MAGVAR); // a program's, or learnt by an earlier feed
    if (!variation || !isPlausible(ZAN_MAGVAR, *variation)) {
        ++counts_.withoutVariation;
        return std::nullopt;
    }
    if (!(*degrees >= 0.0 && *degrees <= 360.0)) return degrees; // for the range check to refuse
    const double bearing = std::fmod(*degrees + *variation, 360.0);
    return bearing < 0.0 ? bearing + 360.0 : bearing;
}

} // namespace tallowmere::feed

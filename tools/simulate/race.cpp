#include "tools/simulate/race.hpp"

namespace tallowmere::simulate {
namespace {

// A wide bay that is deep enough everywhere.
constexpr Place kMiddleOfLine{39.4700, 2.6300};

constexpr int kStepsPerSecond = 5;

Course courseFor(double windDirection) noexcept {
    return {
        .windDirection = windDirection, .lineLength = 320.0, .beatLength = 1600.0, .secondsToStart = kSecondsToStart};
}

} // namespace

Race::Race(std::uint32_t seed) : chance_(seed), wind_(chance_), course_(courseFor(Wind::kMeanDirection)) {
    for (int second = 0; second < 60; ++second) wind_.step(1.0); // let the noise build up
    look();
    const std::size_t boats = kRivals + 1;
    for (std::size_t index = 0; index < boats; ++index) {
        // The own boat starts in the middle, the others left and right of it.
        const std::size_t lane = index == 0 ? boats / 2 : (index <= boats / 2 ? index - 1 : index);
        const double slot = -0.45 + 0.9 * static_cast<double>(lane) / static_cast<double>(boats - 1);
        const double behind = chance_.between(90.0, 170.0); // metres
        const Vector position = course_.onLine(slot + chance_.between(-0.1, 0.1)) - course_.upwind(behind);
        const bool starboard = chance_.between(0.0, 1.0) < 0.5;
        const double heading = bearing360(Wind::kMeanDirection + (starboard ? -90.0 : 90.0));
        const double factor = index == 0 ? 1.0 : chance_.between(0.94, 1.02);
        boats_.emplace_back(position, heading, chance_.between(3.0, 5.0), factor);
        helmsmen_.emplace_back(course_, slot, chance_.between(3.0, 7.0));
    }
}

void Race::step() {
    constexpr double kSeconds = 1.0 / kStepsPerSecond;
    for (int count = 0; count < kStepsPerSecond; ++count) {
        wind_.step(kSeconds);
        look();
        for (std::size_t index = 0; index < boats_.size(); ++index) {
            const Helm helm = helmsmen_[index].steer(boats_[index], surroundings_, time_);
            boats_[index].step(kSeconds, surroundings_, helm);
        }
        time_ += kSeconds;
    }
}

void Race::look() noexcept {
    // The current swings slowly; half a knot at most.
    const double set = 80.0 + 20.0 * std::sin(time_ / 900.0);
    surroundings_ = {wind_.velocity(), polarVector(set, 0.35 + 0.1 * std::sin(time_ / 600.0))};
}

Place Race::placeOf(Vector position) const noexcept {
    constexpr double kMetresPerDegree = 1852.0 * 60.0;
    return {kMiddleOfLine.latitude + position.north / kMetresPerDegree,
            kMiddleOfLine.longitude + position.east / (kMetresPerDegree * std::cos(radians(kMiddleOfLine.latitude)))};
}

double Race::depthAt(Vector position) const noexcept {
    return 34.0 - position.north / 400.0 + 2.0 * std::sin(position.east / 170.0) + std::sin(position.north / 90.0);
}

} // namespace tallowmere::simulate

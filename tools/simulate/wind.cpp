#include "tools/simulate/wind.hpp"

#include <algorithm>

namespace tallowmere::simulate {
namespace {

double wave(double time, double period, double phase) noexcept {
    return std::sin(2.0 * std::numbers::pi * time / period + phase);
}

/// A step of noise that forgets itself after about `memory` seconds and has the given spread.
double noiseStep(double value, double seconds, double memory, double spread, Chance& chance) {
    const double kept = std::exp(-seconds / memory);
    return value * kept + spread * std::sqrt(1.0 - kept * kept) * chance.bell();
}

} // namespace

Wind::Wind(Chance& chance)
    : chance_(chance), slowPhase_(chance.between(0.0, 6.28)), fastPhase_(chance.between(0.0, 6.28)),
      gustPhase_(chance.between(0.0, 6.28)) {}

void Wind::step(double seconds) {
    time_ += seconds;
    directionNoise_ = noiseStep(directionNoise_, seconds, 20.0, 1.5, chance_);
    speedNoise_ = noiseStep(speedNoise_, seconds, 8.0, 0.6, chance_);
}

double Wind::direction() const noexcept {
    return bearing360(kMeanDirection + 6.0 * wave(time_, 420.0, slowPhase_) + 2.5 * wave(time_, 95.0, fastPhase_) +
                      directionNoise_);
}

double Wind::speed() const noexcept {
    // A gust comes faster than it goes: the square sharpens the wave's top.
    const double gust = std::max(0.0, wave(time_, 70.0, gustPhase_));
    return std::max(4.0, 12.5 + 1.0 * wave(time_, 300.0, slowPhase_) + 3.0 * gust * gust + speedNoise_);
}

} // namespace tallowmere::simulate

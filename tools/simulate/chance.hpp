// Random numbers that are the same on every platform for the same seed.
#pragma once

#include <cstdint>
#include <random>

namespace tallowmere::simulate {

class Chance {
  public:
    explicit Chance(std::uint32_t seed) : engine_(seed) {}

    /// The distributions of the standard library differ between platforms; this one doesn't.
    [[nodiscard]] double between(double least, double most) {
        return least + (most - least) * (static_cast<double>(engine_()) / 4'294'967'296.0);
    }
    /// Mean 0, variance 1, never beyond 6.
    [[nodiscard]] double bell() {
        double sum = -6.0;
        for (int count = 0; count < 12; ++count) sum += between(0.0, 1.0);
        return sum;
    }

  private:
    std::mt19937 engine_;
};

} // namespace tallowmere::simulate

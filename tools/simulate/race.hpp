// The race: wind, water, the own boat and its rivals.
#pragma once

#include "tools/simulate/boat.hpp"
#include "tools/simulate/chance.hpp"
#include "tools/simulate/helmsman.hpp"
#include "tools/simulate/wind.hpp"

#include <cstdint>
#include <vector>

namespace tallowmere::simulate {

inline constexpr std::size_t kRivals = 8;
inline constexpr double kSecondsToStart = 120.0;

struct Place {
    double latitude;
    double longitude;
};

class Race {
  public:
    explicit Race(std::uint32_t seed);

    /// One second.
    void step();

    [[nodiscard]] double time() const noexcept { return time_; } // seconds since the beginning
    /// 0 is the own boat, 1 to kRivals the others.
    [[nodiscard]] const Boat& boat(std::size_t index) const { return boats_.at(index); }
    [[nodiscard]] std::size_t boatCount() const noexcept { return boats_.size(); }
    [[nodiscard]] const Surroundings& surroundings() const noexcept { return surroundings_; }
    [[nodiscard]] const Course& course() const noexcept { return course_; }

    [[nodiscard]] Place placeOf(Vector position) const noexcept;
    [[nodiscard]] double depthAt(Vector position) const noexcept;           // metres
    [[nodiscard]] double seaTemperature() const noexcept { return 21.4; }   // degrees Celsius
    [[nodiscard]] double magneticVariation() const noexcept { return 2.0; } // degrees, east positive

  private:
    void look() noexcept;

    Chance chance_;
    Wind wind_;
    Course course_;
    Surroundings surroundings_;
    std::vector<Boat> boats_;
    std::vector<Helmsman> helmsmen_;
    double time_ = 0.0;
};

} // namespace tallowmere::simulate

// What a race program on board tells of the start: where the line lies, and how the own boat stands to it.
#pragma once

#include "tools/simulate/race.hpp"

namespace tallowmere::simulate {

/// Port and starboard as seen from below the line, looking upwind.
struct StartLine {
    Place portEnd;
    Place starboardEnd;
    double squareWind;  // the wind direction that favours neither end, degrees true
    double biasDegrees; // the wind now less that: positive when the starboard end lies further upwind
    double biasMetres;  // how much further
};

/// The own boat's way to the line. Distances and times to the line are those of sailing close-hauled on starboard tack
/// at the speed of the polar, the current included; they are negative when the boat is over it.
struct StartApproach {
    double secondsToGun;     // negative after it
    double metresBelow;      // square to the line
    double metresToLine;     // close-hauled, over the ground
    double secondsToLine;    // the same
    double secondsToBurn;    // to the gun less to the line
    double metresBelowAtGun; // on the course and at the speed of now
};

[[nodiscard]] StartLine startLineOf(const Race& race) noexcept;
[[nodiscard]] StartApproach startApproachOf(const Race& race);

} // namespace tallowmere::simulate

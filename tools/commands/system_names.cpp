#include "tools/commands/system_names.hpp"

#include "core/channels/system_values.hpp"

namespace tallowmere::tools {

const char* systemVariableName(std::size_t index) noexcept {
    switch (index) {
    case system_variable::kBoatLength:
        return "boat length, m";
    case system_variable::kTargetMargin:
        return "margin about the target wind angle, \u00B0";
    default:
        return "";
    }
}

const char* systemIntegerName(std::size_t index) noexcept {
    switch (index) {
    case system_integer::kDepthUnit:
        return "depth unit";
    case system_integer::kSpeedUnit:
        return "speed unit";
    case system_integer::kDistanceUnit:
        return "distance unit";
    case system_integer::kLineDistanceUnit:
        return "unit of distances to a line";
    case system_integer::kFixMode:
        return "fix mode (3: a host accepts the own boat's fixes)";
    case system_integer::kFixSubMode:
        return "fix sub-mode";
    case system_integer::kPressureUnit:
        return "pressure unit";
    default:
        return "";
    }
}

const char* systemFlagName(std::size_t index) noexcept {
    switch (index) {
    case system_flag::kTrueBearings:
        return "true bearings";
    case system_flag::kLocalTime:
        return "local time";
    case system_flag::kFahrenheit:
        return "Fahrenheit";
    case system_flag::kComputeTiltRates:
        return "compute HeelRate and TrimRate";
    case system_flag::kComputeTurnRate:
        return "compute ROT from HDG";
    case system_flag::kCorrectMastAngle:
        return "subtract the mast angle from AWA";
    case system_flag::kAlternateFirst:
        return "alternate table: first column";
    case system_flag::kSomethingWritten:
        return "a value has been written";
    case system_flag::kAlternateLast:
        return "alternate table: last column";
    case system_flag::kWriteLock:
        return "lock the write-lockable channels";
    default:
        return "";
    }
}

} // namespace tallowmere::tools

// System variables, integers and flags: small arrays of settings that all programs share.
#pragma once

#include "core/channels/section_access.hpp"

#include <cstddef>
#include <cstdint>

namespace tallowmere {

/// Indices that the library itself gives a meaning. All others belong to the programs.
namespace system_variable {
inline constexpr std::size_t kBoatLength = 0;   // metres, at least 1
inline constexpr std::size_t kTargetMargin = 7; // degrees about the target wind angle, alternate table
} // namespace system_variable

namespace system_integer {
inline constexpr std::size_t kDepthUnit = 1;
inline constexpr std::size_t kSpeedUnit = 2;
inline constexpr std::size_t kDistanceUnit = 3;
inline constexpr std::size_t kLineDistanceUnit = 4;
inline constexpr std::size_t kFixMode = 6;
inline constexpr std::size_t kFixSubMode = 7;
inline constexpr std::size_t kPressureUnit = 9;
} // namespace system_integer

namespace system_flag {
inline constexpr std::size_t kTrueBearings = 0;
inline constexpr std::size_t kLocalTime = 1;
inline constexpr std::size_t kFahrenheit = 2;
inline constexpr std::size_t kComputeTiltRates = 24; // HeelRate and TrimRate from Heel and Trim
inline constexpr std::size_t kComputeTurnRate = 27;  // ROT from HDG
inline constexpr std::size_t kCorrectMastAngle = 33; // AWA less the mast angle
inline constexpr std::size_t kAlternateFirst = 36;   // alternate table: column 0, else column 1
inline constexpr std::size_t kSomethingWritten = 38; // set by every write that stores a value
inline constexpr std::size_t kAlternateLast = 46;    // alternate table: column 8
inline constexpr std::size_t kWriteLock = 52;        // write-lockable channels refuse writes
} // namespace system_flag

/// The fix mode in which a host accepts the own boat's fixes from clients.
inline constexpr std::int32_t kFixesFromClients = 3;

/// index 0 to 79: the variable in its own unit; 32767.0 for none, out of range or without a section.
[[nodiscard]] inline double systemVariable(const SharedArea* area, std::size_t index) noexcept {
    if (area == nullptr || index >= kSystemVariableCount) return NO_VALUE;
    return readOnce(area->systemVariables[index]);
}
/// index 0 to 12; 0 out of range or without a section.
[[nodiscard]] inline std::int32_t systemInteger(const SharedArea* area, std::size_t index) noexcept {
    if (area == nullptr || index >= kSystemIntegerCount) return 0;
    return readOnce(area->systemIntegers[index]);
}
/// index 0 to 59: the flag's byte as it stands; 0 out of range or without a section.
[[nodiscard]] inline std::uint8_t systemFlag(const SharedArea* area, std::size_t index) noexcept {
    if (area == nullptr || index >= kSystemFlagCount) return 0;
    return readOnce(area->systemFlags[index]);
}

/// Access to the three arrays of one section. Without one, reads give none and writes do nothing. Any
/// thread.
class SystemValues {
  public:
    explicit SystemValues(SharedArea* area) noexcept : area_(area) {}

    [[nodiscard]] double variable(std::size_t index) const noexcept { return systemVariable(area_, index); }
    /// Variable 0 is raised to at least 1, variable 5 held in 0.01 to 10 (a NaN becomes the lower bound);
    /// all others are stored as given. False when the index is 80 or more or there is no section.
    bool setVariable(std::size_t index, double value) noexcept;

    [[nodiscard]] std::uint8_t flag(std::size_t index) const noexcept { return systemFlag(area_, index); }
    /// Stores the byte; ignored out of range.
    void setFlag(std::size_t index, std::uint8_t value) noexcept;

    [[nodiscard]] std::int32_t integer(std::size_t index) const noexcept { return systemInteger(area_, index); }
    /// Stores a value held in the index's range: 0, 7: from 0 up; 1, 2, 8: 0 to 2; 3, 4: 0 to 5; 5: 0 to
    /// 1; 6, 9: 0 to 4; 10, 11, 12 as given. Ignored out of range.
    void setInteger(std::size_t index, std::int32_t value) noexcept;

    /// True when integer 6 equals `value` and either `value` is above 1 or integer 7 equals `sub`.
    [[nodiscard]] bool inMode(std::int32_t value, std::int32_t sub) const noexcept;

  private:
    SharedArea* area_;
};

} // namespace tallowmere

// The user's calibration as a host would load it, in memory of this process: no section is made, none is
// written, no folder is made, no setting changes.
#pragma once

#include "calibration/calibration.hpp"
#include "core/channels/value_store.hpp"
#include "tools/calibration/looking_platform.hpp"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tallowmere::tools {

class UserCalibration {
  public:
    /// Works on a copy of the living section, so that the folder and the other channels' values are those of
    /// now; without one on an area as a new section would begin. Loads all items.
    explicit UserCalibration(const platform::Platform& platform);
    UserCalibration(const UserCalibration&) = delete;
    UserCalibration& operator=(const UserCalibration&) = delete;

    [[nodiscard]] Calibration& calibration() noexcept { return calibration_; }
    [[nodiscard]] CalibrationItem& item(std::size_t id) noexcept { return calibration_.item(id); }
    [[nodiscard]] const ValueStore& values() const noexcept { return values_; }
    [[nodiscard]] const LookingPlatform& platform() const noexcept { return platform_; }
    /// Path of a file in the "config" folder.
    [[nodiscard]] std::u16string configFile(std::u16string_view name) const;

    /// The own boat's value of a channel, NO_VALUE for none or no channel.
    [[nodiscard]] double current(std::int32_t channel) const noexcept;
    /// Replaces it, in this copy.
    void pretend(std::int32_t channel, double value) noexcept;
    /// Writes a value the whole way, in this copy. What is stored then, NO_VALUE for nothing; empty when the
    /// write is refused.
    [[nodiscard]] std::optional<double> write(ChannelIndex channel, double value) noexcept;

  private:
    LookingPlatform platform_;
    std::unique_ptr<SharedArea> area_;
    ValueStore values_;
    Calibration calibration_;
};

} // namespace tallowmere::tools

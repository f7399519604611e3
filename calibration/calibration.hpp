// The twenty live calibration items of a core object, and the correction of written values.
#pragma once

#include "calibration/curve.hpp"
#include "calibration/item_table.hpp"
#include "calibration/polar.hpp"
#include "core/channels/value_store.hpp"

#include <array>
#include <cstdint>
#include <string>

namespace tallowmere {

struct CalibrationItem {
    CalibrationTable table;
    std::int32_t columnInput = kNone16; // channel numbers; 32767: none
    std::int32_t rowInput = kNone16;
    std::int32_t channel = kNone16;
    std::uint8_t use = 0; // 1: the item applies
    std::u16string file;  // full path
    std::u16string name;
    std::u16string unit;
};

/// Until it is started every item is empty and not in use, so that values are brought into range at most.
///
/// Threads: correcting values runs on any thread at once, without a lock and without allocating. Everything
/// else, and a host's own editing of an item, wants no other thread in here; whoever edits a table calls
/// BuildSplines on it before values are written again.
class Calibration final : public ValueCorrector {
  public:
    /// `values` is never null and must outlive this object's use; it may be yet to be constructed.
    explicit Calibration(const ValueStore* values) noexcept : values_(values) {}
    Calibration(const Calibration&) = delete;
    Calibration& operator=(const Calibration&) = delete;

    /// The boat's polar, for the items reset from now on. Null (as at the start): none.
    void setPolar(const Polar* polar) noexcept { polar_ = polar; }

    [[nodiscard]] const std::array<CalibrationItem, kCalibrationItemCount>& items() const noexcept { return items_; }
    /// id 0 to 19.
    [[nodiscard]] CalibrationItem& item(std::size_t id) noexcept { return items_[id]; }

    /// Makes an item what its definition says: default table, its use (also in the channel's calibrated flag),
    /// the path of its file in the data folder. Nothing for ids from 20 on.
    void ResetCalibrationItem(std::size_t id);

    /// Reads path, use and straightness of all items from the user's settings. What is missing, of another
    /// type or of another size leaves the item as it is. KEPT: item 0 is in use afterwards, whatever the
    /// settings say, when there is a key.
    void ReadCalibrationSettings();

    /// Replaces an item's table by that of its file, ready to be evaluated by any thread; without a readable
    /// file, or out of memory (std::bad_alloc), by an empty one. Nothing for ids from 20 on.
    /// path   a file to read in place of the item's own; empty: the item's own
    void loadCalibrationFile(std::size_t id, const std::u16string& path = {});

    /// Sets the calibrated flag of the item's channel when any item of that channel is in use, else clears it.
    /// Nothing without a channel.
    void UpdateCalibratedFlag(std::size_t id) noexcept;

    /// What the item adds to a value that is written to its channel. The item's other inputs are the own
    /// boat's current values. False with NO_VALUE for ids from 20 on, for an item that is not in use (unless
    /// it always applies), and where its table has no value.
    bool CalibrationCorrection(std::size_t id, double value, double& correction) noexcept;

    /// The value to store for one that is written: corrected, then brought into the range of the channel's
    /// unit class by one turn at most. Unchanged when the channel's calibrated flag is off.
    [[nodiscard]] double CalibrateOnWrite(ChannelIndex channel, double value) noexcept;

    /// The same, for a caller who has looked at the flag.
    [[nodiscard]] double correct(ChannelIndex channel, double value) noexcept override;

  private:
    [[nodiscard]] double addCorrection(ChannelIndex channel, double value) noexcept;
    [[nodiscard]] double corrected(std::size_t id, double value, double sign) noexcept;
    [[nodiscard]] double inputOf(const CalibrationItem& item, std::int32_t input, double value) const noexcept;
    [[nodiscard]] bool isSignedAngleInput(std::int32_t input) const noexcept;

    std::array<CalibrationItem, kCalibrationItemCount> items_;
    const ValueStore* values_;
    const Polar* polar_ = nullptr;
};

} // namespace tallowmere

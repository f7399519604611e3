// A host's calibration over a fresh section on a machine in memory.
#pragma once

#include "calibration/calibration.hpp"
#include "settings/reg_ex.hpp"
#include "tests/support/new_section.hpp"

#include <bit>
#include <initializer_list>
#include <limits>
#include <string>
#include <utility>

namespace tallowmere::test {

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

inline std::uint64_t bitsOf(double value) {
    return std::bit_cast<std::uint64_t>(value);
}

/// A row of knots given as (position, value).
inline CurveRow rowOf(double rowValue, std::initializer_list<std::pair<double, double>> points) {
    CurveRow row;
    row.rowValue = rowValue;
    row.dirty = 1;
    for (const auto& [x, y] : points) row.knots.push_back({x, y, NO_VALUE});
    return row;
}

class CalibrationTest : public NewSection {
  protected:
    CalibrationTest() {
        writeText(area->dataFolder, u"C:\\Sail");
        machine.files[u"C:\\Sail"] = std::nullopt;
    }
    void reset() {
        for (std::size_t id = 0; id < kCalibrationItemCount; ++id) calibration.ResetCalibrationItem(id);
    }
    /// Brings one item into use with these rows, and its channel's flag up.
    CalibrationItem& use(std::size_t id, std::initializer_list<CurveRow> rows) {
        CalibrationItem& item = calibration.item(id);
        item.use = 1;
        item.table.rows = rows;
        BuildSplines(item.table);
        calibration.UpdateCalibratedFlag(id);
        return item;
    }
    /// A table of one knot: the same correction everywhere.
    CalibrationItem& useConstant(std::size_t id, double correction) {
        return use(id, {rowOf(0.0, {{0.0, correction}})});
    }
    bool write(ChannelIndex channel, double value, BoatIndex boat = 0) {
        return values.store(channel, values.doubleToRecord(channel, value).record, boat, kNoTime);
    }
    [[nodiscard]] double read(ChannelIndex channel, BoatIndex boat = 0) const {
        return values.recordAsDouble(channel, values.fetch(channel, boat).record).value;
    }
    double stored(ChannelIndex channel, double value) {
        EXPECT_TRUE(write(channel, value));
        return read(channel);
    }
    [[nodiscard]] bool calibrated(std::size_t channel) const { return area->settings[channel].calibrate != 0; }
    /// The item's correction, which must be there.
    double correction(std::size_t id, double value) {
        double found = 0.0;
        EXPECT_TRUE(calibration.CalibrationCorrection(id, value, found));
        return found;
    }
    void expectNoCorrection(std::size_t id, double value) {
        double found = 0.0;
        EXPECT_FALSE(calibration.CalibrationCorrection(id, value, found));
        EXPECT_EQ(bitsOf(found), bitsOf(NO_VALUE));
    }

    Calibration calibration{&values};
    ValueStore values{context, &calibration}; // in place of the plain one
};

} // namespace tallowmere::test

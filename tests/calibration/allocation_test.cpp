// Writing a calibrated value takes no memory from the heap.
#include "tests/calibration/calibration_fixture.hpp"
#include "tests/support/counted_memory.hpp"

namespace tallowmere::test {
namespace {

class Allocation : public CalibrationTest {};

TEST_F(Allocation, CountsWhatIsTaken) {
    const std::size_t before = allocationsMade();
    const auto taken = std::make_unique<int>(1);
    EXPECT_EQ(allocationsMade(), before + 1);
}

TEST_F(Allocation, CalibratedWriteTakesNoneEvenWhenASplineMustBeBuilt) {
    reset();
    for (std::size_t id = 0; id < kCalibrationItemCount; ++id) {
        use(id, {rowOf(0.0, {}), rowOf(10.0, {}), rowOf(20.0, {})});
        for (CurveRow& row : calibration.item(id).table.rows)
            for (std::size_t k = 0; k < kMostKnots; ++k)
                row.knots.push_back({static_cast<double>(k), static_cast<double>(k % 7), NO_VALUE});
    }
    const std::size_t before = allocationsMade();
    for (int round = 0; round < 3; ++round) {
        for (std::size_t id = 0; id < kCalibrationItemCount; ++id)
            for (CurveRow& row : calibration.item(id).table.rows) row.dirty = 1;
        for (ChannelIndex channel = 1; channel < 30; ++channel) write(channel, 12.5);
    }
    EXPECT_EQ(allocationsMade(), before);
    EXPECT_NE(read(ZAN_BSP), 12.5);
}

} // namespace
} // namespace tallowmere::test

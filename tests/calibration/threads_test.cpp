// Many threads of a host write calibrated values at once.
#include "tests/calibration/calibration_fixture.hpp"

#include <atomic>
#include <thread>
#include <vector>

namespace tallowmere::test {
namespace {

class Threads : public CalibrationTest {};

TEST_F(Threads, EvaluateOneLoadedTableAtOnce) {
    machine.addFile(u"C:\\Sail\\calibration\\ZAN_CAL_Bsp.txt",
                    "0 5 10 15 20\n0 0.5 0.25 -0.5 1 2\n10 1 2 3 2 1\n20 0 0 4 0 0\n");
    reset();
    CalibrationItem& item = calibration.item(calibration_item::kBsp);
    item.use = 1;
    calibration.loadCalibrationFile(calibration_item::kBsp);
    write(ZAN_HEEL, 12.0);

    std::vector<double> expected;
    for (int k = 0; k < 200; ++k) expected.push_back(correction(calibration_item::kBsp, 0.1 * k));
    calibration.loadCalibrationFile(calibration_item::kBsp); // anew, so that the threads come first

    std::atomic<int> wrong{0};
    const auto work = [&] {
        for (int round = 0; round < 200; ++round) {
            for (std::size_t k = 0; k < expected.size(); ++k) {
                double found = 0.0;
                calibration.CalibrationCorrection(calibration_item::kBsp, 0.1 * static_cast<double>(k), found);
                if (bitsOf(found) != bitsOf(expected[k])) ++wrong;
            }
        }
    };
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < 4; ++t) threads.emplace_back(work);
    }
    EXPECT_EQ(wrong, 0);
}

} // namespace
} // namespace tallowmere::test

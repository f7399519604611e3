// What hosts use of the core beyond the exported functions, in one that has floating-point exceptions unmasked:
// calibration by hostile tables, units for display, the start with hostile settings and files.
#include "tests/floating_point/numbers.hpp"
#include "tests/floating_point/unmasked.hpp"

#include "core/ccore.hpp"
#include "tests/calibration/calibration_fixture.hpp"
#include "units/convert.hpp"

#include <string>

namespace tallowmere::test {
namespace {

/// Rows of knots at positions with values, each of several kinds of odd.
CalibrationTable tableOf(double position, double value, double rowValue) {
    CalibrationTable table;
    table.rows = {rowOf(-90.0, {{0.0, 1.0}, {10.0, 2.0}, {20.0, -1.0}, {30.0, 4.0}}),
                  rowOf(0.0, {{position, value}, {position, 3.0}, {20.0, value}, {position, value}}),
                  rowOf(rowValue, {{-180.0, value}, {position, 1.0}, {10.0, 5.0}, {180.0, value}}),
                  rowOf(90.0, {{30.0, 1.0}, {position, value}, {0.0, 2.0}}),
                  rowOf(100.0, {{position, value}}),
                  CurveRow{}};
    return table;
}

class Host : public CalibrationTest {
  protected:
    void SetUp() override {
        reset();
        area->boatCount = kBoatCount;
    }
    void putEverywhere(double number) {
        for (ChannelIndex channel = 1; channel < kChannelCount; ++channel) {
            for (FullBoatBlock& block : area->fullBlocks) {
                storeRecord(block.current[channel], Record::ofNumber(number));
                storeRecord(block.third[channel], Record::ofNumber(number));
                block.stamps[channel] = 1;
            }
            area->settings[channel].calibrate = 1;
        }
        for (double& variable : area->systemVariables) variable = number;
        for (std::uint8_t& flag : area->systemFlags) flag = 1;
        area->systemFlags[system_flag::kWriteLock] = 0;
    }
    void giveAllItems(const CalibrationTable& table, std::uint8_t linear) {
        for (std::size_t id = 0; id < kCalibrationItemCount; ++id) {
            CalibrationItem& item = calibration.item(id);
            item.use = 1;
            item.table = table;
            item.table.linear = linear;
            if (id % 2 == 1) item.rowInput = ZAN_TRIM;
        }
    }
    /// `writes` once over a section that holds `held`.
    void correctAll(double held, double written) {
        putEverywhere(held);
        for (ChannelIndex channel = 1; channel < kChannelCount; ++channel) {
            values.storeDouble(channel, written, 0);
            (void)calibration.CalibrateOnWrite(channel, written);
            (void)values.fetchProcessed(channel, 0, true);
        }
    }
};

TEST_F(Host, CorrectsAnyNumberByAnyTable) {
    for (const double position : kOddNumbers)
        for (const double value : kOddNumbers)
            for (std::uint8_t linear = 0; linear < 2; ++linear) {
                giveAllItems(tableOf(position, value, position), linear);
                EXPECT_TRUE(raisesNothing([&] {
                    for (const double written : kOddNumbers) correctAll(written, 50.0);
                    for (const double written : kOddNumbers) correctAll(45.0, written);
                })) << position
                    << ' ' << value << ' ' << int{linear};
            }
}

TEST_F(Host, EvaluatesAnyTableAtAnyPlace) {
    for (const double position : kOddNumbers)
        for (const double value : kOddNumbers)
            for (const double rowValue : kOddNumbers) {
                CalibrationTable table = tableOf(position, value, rowValue);
                EXPECT_TRUE(raisesNothing([&] {
                    for (const double x : kOddNumbers)
                        for (const double r : kOddNumbers) {
                            double y = 0.0;
                            table.linear ^= 1;
                            EvalTable(table, x, r, y);
                            BlendRows(x, position, r, value, rowValue, y);
                        }
                })) << position
                    << ' ' << value << ' ' << rowValue;
            }
}

TEST_F(Host, EvaluatesLinesWhoseKnotsHaveChangedSinceTheirSpline) {
    CurveRow row = rowOf(0.0, {{0.0, 1.0}, {10.0, 2.0}});
    BuildSpline(row);
    row.knots[0].y = -1e308;
    row.knots[1].y = 1e308;
    row.dirty = 1;
    double y = 0.0;
    EXPECT_TRUE(raisesNothing([&] { EvalLinear(row, 5.0, y); }));
}

TEST_F(Host, ShowsAnyNumber) {
    for (const double held : kOddNumbers)
        for (std::int16_t unitClass = 0; unitClass < 24; ++unitClass)
            EXPECT_TRUE(raisesNothing([&] {
                putEverywhere(held);
                area->settings[ZAN_BSP].unitClass = unitClass;
                for (std::int32_t setting = -1; setting < 7; ++setting) {
                    for (std::int32_t& integer : area->systemIntegers) integer = setting;
                    for (std::uint8_t& flag : area->systemFlags) flag = static_cast<std::uint8_t>(setting & 1);
                    for (const double value : kOddNumbers)
                        for (const double variation : kOddNumbers)
                            (void)ConvertForDisplay(values, ZAN_BSP, value, variation);
                }
            })) << held
                << ' ' << unitClass;
}

TEST_F(Host, TakesAnyNumberAsASystemVariable) {
    for (const double number : kOddNumbers)
        EXPECT_TRUE(raisesNothing([&] {
            for (std::size_t index = 0; index < kSystemVariableCount; ++index) (void)system.setVariable(index, number);
        })) << number;
}

class Start : public testing::Test {
  protected:
    MemoryMachine machine;
    MemoryPlatform platform{machine};
};

TEST_F(Start, WithAnyNumbersInSettingsAndFiles) {
    const std::u16string folder = u"C:\\ProgramData\\Tallowmere\\calibration\\ZAN_CAL_";
    for (const char* numbers : {"1 1 1 1 1 1 1\n", "1e308 1e308 -1e308 1e308\n", "0 1e-320 5 1e-320 7 2e-320 1e308\n",
                                "1 2 3\n1e308 1e308 -1e308\n-1e308 1e308 1\n", "1e999 -1e999 1e-999\n"})
        for (const double number : kOddNumbers) {
            for (const CalibrationItemDef& item : kCalibrationItems) {
                machine.addFile(folder + item.name + u".txt", numbers);
                machine.addDword(kCalibrationKey, indexedName(u"CalUse_", static_cast<std::size_t>(item.id)), 1);
            }
            for (std::size_t index = 0; index < kSystemVariableCount; ++index)
                machine.addDouble(kCoreKey, indexedName(u"Sys_v", index), number);
            EXPECT_TRUE(raisesNothing([&] { const CCore host(platform, true); })) << numbers << number;
        }
}

} // namespace
} // namespace tallowmere::test

// Resetting the items, their settings, their files' paths, and the calibrated flags of their channels.
#include "tests/calibration/calibration_fixture.hpp"

#include <set>

namespace tallowmere::test {
namespace {

using platform::SettingsType;
namespace which = calibration_item;

class CalibrationItems : public CalibrationTest {
  protected:
    [[nodiscard]] std::set<std::size_t> inUse() const {
        std::set<std::size_t> found;
        for (std::size_t id = 0; id < kCalibrationItemCount; ++id)
            if (calibration.items()[id].use != 0) found.insert(id);
        return found;
    }
    [[nodiscard]] std::set<std::size_t> flagged() const {
        std::set<std::size_t> found;
        for (std::size_t channel = 0; channel < kChannelCount; ++channel)
            if (calibrated(channel)) found.insert(channel);
        return found;
    }
    void updateFlags() {
        for (std::size_t id = 0; id < kCalibrationItemCount; ++id) calibration.UpdateCalibratedFlag(id);
    }
};

TEST_F(CalibrationItems, AreEmptyAndUnusedBeforeTheyAreReset) {
    for (const CalibrationItem& item : calibration.items()) {
        EXPECT_TRUE(item.table.rows.empty());
        EXPECT_EQ(item.use, 0);
        EXPECT_EQ(item.channel, 32767);
        EXPECT_EQ(item.columnInput, 32767);
        EXPECT_EQ(item.rowInput, 32767);
        EXPECT_TRUE(item.file.empty());
    }
}

TEST_F(CalibrationItems, ResetTakesEverythingFromTheDefinition) {
    reset();
    for (const CalibrationItemDef& definition : kCalibrationItems) {
        const CalibrationItem& item = calibration.items()[static_cast<std::size_t>(definition.id)];
        EXPECT_EQ(item.columnInput, definition.columnInput);
        EXPECT_EQ(item.rowInput, definition.rowInput);
        EXPECT_EQ(item.channel, definition.channel);
        EXPECT_EQ(item.use, definition.useByDefault);
        EXPECT_EQ(item.table.linear, 0);
        EXPECT_EQ(item.table.sharedColumns, definition.sharedColumns);
        EXPECT_EQ(item.table.rows.size(), definition.rows);
        EXPECT_TRUE(item.name == definition.name);
        EXPECT_TRUE(item.unit == definition.unit);
    }
}

TEST_F(CalibrationItems, ResetLeavesNoSplineToBuild) {
    reset();
    for (const CalibrationItem& item : calibration.items())
        for (const CurveRow& row : item.table.rows) EXPECT_EQ(row.dirty, 0);
}

TEST_F(CalibrationItems, FilesAreNamedAfterTheItems) {
    reset();
    EXPECT_TRUE(calibration.items()[which::kBsp].file == u"C:\\Sail\\calibration\\ZAN_CAL_Bsp.txt");
    EXPECT_TRUE(calibration.items()[which::kWindWeight].file == u"C:\\Sail\\calibration\\ZAN_CAL_Wind weight.txt");
    EXPECT_TRUE(calibration.items()[which::kRateOfTurn].file == u"C:\\Sail\\calibration\\ZAN_CAL_Rate of turn.txt");
    EXPECT_TRUE(machine.files.contains(u"C:\\Sail\\calibration"));
}

TEST_F(CalibrationItems, ResetWritesTheDefaultUseIntoTheChannelsFlags) {
    for (ChannelSetting& setting : area->settings) setting.calibrate = 1;
    reset();
    const std::set<std::size_t> own{1, 2, 3, 4, 5, 6, 13, 15, 16, 18, 19, 20, 24};
    for (std::size_t channel = 0; channel < kChannelCount; ++channel)
        EXPECT_EQ(calibrated(channel), !own.contains(channel)) << channel; // Leeway is in use by default
}

TEST_F(CalibrationItems, ResetOfAnEditedItemRestoresIt) {
    reset();
    CalibrationItem& item = use(which::kTwa, {rowOf(1.0, {{2.0, 3.0}})});
    item.table.linear = 1;
    item.channel = 99;
    calibration.ResetCalibrationItem(which::kTwa);
    EXPECT_EQ(item.table.rows.size(), 7U);
    EXPECT_EQ(item.table.linear, 0);
    EXPECT_EQ(item.channel, ZAN_TWA);
    EXPECT_EQ(item.use, 0);
}

TEST_F(CalibrationItems, IdsFrom20OnAreIgnored) {
    reset();
    const auto before = std::make_unique<SharedArea>(*area);
    machine.trace.clear();
    calibration.ResetCalibrationItem(20);
    calibration.ResetCalibrationItem(static_cast<std::size_t>(-1));
    calibration.loadCalibrationFile(20);
    calibration.UpdateCalibratedFlag(20);
    EXPECT_TRUE(machine.trace.empty());
    EXPECT_TRUE(sameBytes(*before));
}

TEST_F(CalibrationItems, WithoutASectionTheyResetAndLoadAllTheSame) {
    const ValueStore without(withoutSection);
    Calibration alone(&without);
    machine.addFile(u"D:\\bsp.txt", "5 3 1\n");
    machine.addString(kCalibrationKey, u"CalFile_2", u"D:\\bsp.txt");
    for (std::size_t id = 0; id < kCalibrationItemCount; ++id) alone.ResetCalibrationItem(id);
    EXPECT_TRUE(alone.items()[which::kBsp].file == u"\\ZAN_CAL_Bsp.txt");
    alone.ReadCalibrationSettings();
    alone.loadCalibrationFile(which::kBsp);
    alone.UpdateCalibratedFlag(which::kBsp);
    EXPECT_EQ(alone.items()[which::kBsp].table.rows.size(), 1U);
    EXPECT_EQ(alone.CalibrateOnWrite(ZAN_BSP, 5.0), 5.0);
}

// --- settings

TEST_F(CalibrationItems, WithoutAKeyItemsKeepTheirResetValues) {
    reset();
    calibration.ReadCalibrationSettings();
    EXPECT_EQ(inUse(), (std::set<std::size_t>{0, 1, 10, 16}));
    EXPECT_FALSE(machine.settings.contains(kCalibrationKey)); // and none is made
}

TEST_F(CalibrationItems, WithoutAKeyItem0IsNotForced) {
    calibration.ReadCalibrationSettings();
    EXPECT_TRUE(inUse().empty());
}

TEST_F(CalibrationItems, Item0IsInUseWhateverTheSettingsSay) {
    reset();
    machine.addDword(kCalibrationKey, u"CalUse_0", 0);
    machine.addDword(kCalibrationKey, u"CalUse_1", 0);
    calibration.ReadCalibrationSettings();
    EXPECT_EQ(inUse(), (std::set<std::size_t>{0, 10, 16}));
}

TEST_F(CalibrationItems, SettingsOfEachItemAreFoundByItsNumber) {
    reset();
    for (std::size_t id = 0; id < kCalibrationItemCount; ++id) {
        machine.addString(kCalibrationKey, indexedName(u"CalFile_", id), indexedName(u"D:\\file", id));
        machine.addDword(kCalibrationKey, indexedName(u"CalUse_", id), id % 2 == 0 ? 1 : 0);
        machine.addDword(kCalibrationKey, indexedName(u"CalLinear_", id), id % 3 == 0 ? 0xFFFFFFFF : 0);
    }
    calibration.ReadCalibrationSettings();
    for (std::size_t id = 0; id < kCalibrationItemCount; ++id) {
        const CalibrationItem& item = calibration.items()[id];
        EXPECT_TRUE(item.file == indexedName(u"D:\\file", id));
        EXPECT_EQ(item.use, id % 2 == 0 ? 1 : 0) << id;
        EXPECT_EQ(item.table.linear, id % 3 == 0 ? 1 : 0) << id;
    }
}

TEST_F(CalibrationItems, ValuesOfOtherTypesAndSizesAreIgnored) {
    reset();
    machine.addString(kCalibrationKey, u"CalUse_2", u"1");
    machine.addBytes(kCalibrationKey, u"CalUse_3", SettingsType::Binary, std::string("\1\0\0\0", 4));
    machine.addBytes(kCalibrationKey, u"CalUse_4", SettingsType::Dword, std::string("\1\0", 2));
    machine.addBytes(kCalibrationKey, u"CalUse_5", SettingsType::Dword, std::string("\1\0\0\0\0\0\0\0", 8));
    machine.addBytes(kCalibrationKey, u"CalUse_6", SettingsType::Dword, "");
    machine.addString(kCalibrationKey, u"CalLinear_2", u"1");
    machine.addBytes(kCalibrationKey, u"CalLinear_3", SettingsType::Dword, std::string("\1", 1));
    machine.addDword(kCalibrationKey, u"CalFile_2", 7);
    calibration.ReadCalibrationSettings();
    EXPECT_EQ(inUse(), (std::set<std::size_t>{0, 1, 10, 16}));
    for (const CalibrationItem& item : calibration.items()) EXPECT_EQ(item.table.linear, 0);
    EXPECT_TRUE(calibration.items()[2].file == u"C:\\Sail\\calibration\\ZAN_CAL_Bsp.txt");
}

TEST_F(CalibrationItems, EmptyPathInTheSettingsIsTaken) {
    reset();
    machine.addFile(u"C:\\Sail\\calibration\\ZAN_CAL_Bsp.txt", "5 3 1\n");
    machine.addString(kCalibrationKey, u"CalFile_2", u"");
    calibration.ReadCalibrationSettings();
    EXPECT_TRUE(calibration.items()[2].file.empty());
    calibration.loadCalibrationFile(2);
    EXPECT_TRUE(calibration.items()[2].table.rows.empty());
}

// --- files

TEST_F(CalibrationItems, LoadingReplacesTheDefaultTable) {
    reset();
    machine.addFile(u"C:\\Sail\\calibration\\ZAN_CAL_Bsp.txt", "0 5 10 20\n0 0.1 0.2 0.3 0.5\n20 1 2 3 1\n");
    calibration.loadCalibrationFile(which::kBsp);
    const CalibrationTable& table = calibration.items()[which::kBsp].table;
    ASSERT_EQ(table.rows.size(), 2U);
    EXPECT_EQ(table.changed, 0);
    for (const CurveRow& row : table.rows) {
        EXPECT_EQ(row.dirty, 0); // nothing is left to build when values are written
        EXPECT_EQ(row.knots[0].y2, 0.0);
        EXPECT_NE(row.knots[1].y2, 0.0);
        EXPECT_NE(row.knots[1].y2, NO_VALUE);
    }
}

TEST_F(CalibrationItems, LoadingWithoutAFileLeavesAnEmptyTable) {
    reset();
    calibration.item(which::kBsp).use = 1;
    EXPECT_EQ(correction(which::kBsp, 5.0), 0.0);
    calibration.loadCalibrationFile(which::kBsp);
    EXPECT_TRUE(calibration.items()[which::kBsp].table.rows.empty());
    expectNoCorrection(which::kBsp, 5.0);
}

TEST_F(CalibrationItems, AnotherFileCanBeReadInPlaceOfTheItemsOwn) {
    reset();
    machine.addFile(u"D:\\other.txt", "5 3 1\n");
    calibration.loadCalibrationFile(which::kBsp, u"D:\\other.txt");
    EXPECT_EQ(calibration.items()[which::kBsp].table.rows.size(), 1U);
    EXPECT_TRUE(calibration.items()[which::kBsp].file == u"C:\\Sail\\calibration\\ZAN_CAL_Bsp.txt");
}

// --- flags

TEST_F(CalibrationItems, FlagFollowsTheItemsUse) {
    reset();
    calibration.item(which::kHdg).use = 1;
    updateFlags();
    EXPECT_EQ(flagged(), (std::set<std::size_t>{ZAN_LEEWAY, ZAN_HDG}));
    calibration.item(which::kHdg).use = 0;
    calibration.UpdateCalibratedFlag(which::kHdg);
    EXPECT_EQ(flagged(), (std::set<std::size_t>{ZAN_LEEWAY}));
}

TEST_F(CalibrationItems, ChannelOfTwoItemsIsFlaggedWhenEitherIsInUse) {
    for (const std::size_t inUseItem : {which::kAwaOffset, which::kAwa}) {
        reset();
        calibration.item(inUseItem).use = 1;
        updateFlags();
        EXPECT_TRUE(calibrated(ZAN_AWA));
        calibration.item(inUseItem).use = 0;
        updateFlags();
        EXPECT_FALSE(calibrated(ZAN_AWA));
    }
}

TEST_F(CalibrationItems, FlagIsOneWhateverTheUseByte) {
    reset();
    calibration.item(which::kHdg).use = 0x80;
    calibration.UpdateCalibratedFlag(which::kHdg);
    EXPECT_EQ(area->settings[ZAN_HDG].calibrate, 1);
}

TEST_F(CalibrationItems, ItemWithoutAChannelFlagsNothing) {
    reset();
    const auto before = std::make_unique<SharedArea>(*area);
    for (const std::int32_t channel : {32767, 414, -1, INT32_MAX, INT32_MIN}) {
        calibration.item(which::kWindWeight).channel = channel;
        calibration.item(which::kWindWeight).use = 1;
        calibration.UpdateCalibratedFlag(which::kWindWeight);
    }
    EXPECT_TRUE(sameBytes(*before));
}

} // namespace
} // namespace tallowmere::test

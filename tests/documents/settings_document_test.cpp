// The files that docs/settings.md shows are taken as it says.
#include "core/config/alternate_table.hpp"
#include "settings/reg_ex.hpp"
#include "tests/documents/document_blocks.hpp"
#include "tests/tools/cli/command_fixture.hpp"

namespace tallowmere::test {
namespace {

constexpr char16_t kFolder[] = u"C:\\ProgramData\\Tallowmere\\";

class SettingsDocument : public CommandTest {
  protected:
    void put(const std::u16string& path, const std::string& info) {
        machine.addFile(kFolder + path, documentBlock("settings.md", info));
    }
    void putAll() {
        put(u"config\\boats.xml", "xml boats.xml");
        put(u"config\\channels.xml", "xml channels.xml");
        put(u"config\\alternate.csv", "csv alternate.csv");
        for (const std::string item : {"Bsp", "Hdg", "Awa", "Heel"}) putItem(item, "");
    }
    /// The file of an item, as one of its blocks has it.
    void putItem(const std::string& item, const std::string& remark) {
        const std::string name = "ZAN_CAL_" + item + ".txt";
        put(u"calibration\\" + std::u16string(name.begin(), name.end()), "text calibration/" + name + remark);
    }
    void useItem(std::size_t item) { machine.addDword(kCalibrationKey, indexedName(u"CalUse_", item), 1); }
    static double stored(CCore& host, ChannelIndex channel, double value) {
        EXPECT_TRUE(host.values().storeDouble(channel, value, 0));
        return host.values().fetch(channel, 0).record.number();
    }
    static double eval(CalibrationItem& item, double x, double r) {
        double y = 0;
        EXPECT_TRUE(EvalTable(item.table, x, r, y));
        return y;
    }
};

TEST_F(SettingsDocument, ExamplesAreNoProblem) {
    putAll();
    const CommandRun checked = run({"check"});
    EXPECT_EQ(checked.out, "");
    EXPECT_EQ(checked.code, 0);
}

TEST_F(SettingsDocument, BoatsAreNamed) {
    putAll();
    EXPECT_EQ(readText(area().boats[0].name), u"Heron");
    EXPECT_EQ(readText(area().boats[3].name), u"Falcon");
    EXPECT_EQ(area().boats[3].mmsi, 235012345U);
    EXPECT_EQ(area().boats[3].colour, 0x0000FFU);
    EXPECT_EQ(readText(area().boats[7].name), u"Boat 7");
}

TEST_F(SettingsDocument, ChannelsAreChanged) {
    putAll();
    EXPECT_EQ(area().settings[ZAN_BSP].damping, 3);
    EXPECT_EQ(area().settings[ZAN_TWS].log, 0);
    EXPECT_EQ(area().settings[175].unitClass, 3);
    EXPECT_EQ(area().settings[175].precision, 2);
    EXPECT_EQ(readText(area().settings[175].shortName), u"Keel");
}

TEST_F(SettingsDocument, AlternatingChannelsStandForOthers) {
    putAll();
    EXPECT_EQ(resolveAlternating(&area(), 117), ZAN_BSP); // without a wind angle: the first that is given
    store(ZAN_TWA, -40.0);
    EXPECT_EQ(resolveAlternating(&area(), 118), ZAN_RUDDERP);
    store(ZAN_TWA, 40.0);
    EXPECT_EQ(resolveAlternating(&area(), 118), ZAN_RUDDERS);
    store(ZAN_TMTOGUN, 0.001);
    EXPECT_EQ(resolveAlternating(&area(), 117), ZAN_TMTOLN);
}

TEST_F(SettingsDocument, CalibrationFilesHaveBothLayouts) {
    putAll();
    CCore host(platform, true);
    CalibrationItem& bsp = host.calibration().item(calibration_item::kBsp);
    EXPECT_EQ(bsp.table.sharedColumns, 1);
    EXPECT_EQ(eval(bsp, 10.0, 0.0), 0.1);
    EXPECT_EQ(eval(bsp, 10.0, 20.0), 0.3);
    CalibrationItem& hdg = host.calibration().item(calibration_item::kHdg);
    EXPECT_EQ(hdg.table.sharedColumns, 0);
    EXPECT_EQ(eval(hdg, 90.0, NO_VALUE), -0.5);
    EXPECT_EQ(eval(hdg, 360.0, NO_VALUE), 1.5);
}

TEST_F(SettingsDocument, CalibrationFilesCorrectAsTheySay) {
    putAll();
    for (const std::size_t item :
         {calibration_item::kBsp, calibration_item::kHdg, calibration_item::kAwa, calibration_item::kHeel})
        useItem(item);
    CCore host(platform, true);
    EXPECT_EQ(stored(host, ZAN_AWA, 30.0), 31.0); // no wind speed yet: the first row
    stored(host, ZAN_AWS, 10.0);
    EXPECT_EQ(stored(host, ZAN_AWA, 30.0), 30.8);
    EXPECT_EQ(stored(host, ZAN_AWA, -120.0), -119.2);
    EXPECT_EQ(stored(host, ZAN_HDG, 90.0), 89.5);
    EXPECT_EQ(stored(host, ZAN_HEEL, -18.5), -20.0);
    EXPECT_EQ(stored(host, ZAN_BSP, 10.0), 10.3); // heeled to port
    EXPECT_EQ(stored(host, ZAN_HEEL, 21.5), 20.0);
    EXPECT_EQ(stored(host, ZAN_BSP, 10.0), 10.3); // and to starboard
}

TEST_F(SettingsDocument, AWrongCurveAlongAnAngleIsToldAndStoredAsShown) {
    putItem("Heel", " wrong");
    useItem(calibration_item::kHeel);
    const CommandRun checked = run({"check", "Heel"});
    EXPECT_EQ(checked.out, std::string("C:\\ProgramData\\Tallowmere\\calibration\\") +
                               documentBlock("settings.md", "text calibration/ZAN_CAL_Heel.txt wrong check"));
    EXPECT_EQ(checked.code, 1);
    CCore host(platform, true);
    EXPECT_NEAR(stored(host, ZAN_HEEL, 10.0), -1268.35, 1e-6);
}

TEST_F(SettingsDocument, WrongContentIsToldAsShown) {
    put(u"config\\alternate.csv", "csv alternate.csv wrong");
    const CommandRun checked = run({"check", "C:\\ProgramData\\Tallowmere\\config\\alternate.csv"});
    std::string expected = documentBlock("settings.md", "text alternate.csv wrong");
    constexpr std::string_view folder = "C:\\ProgramData\\Tallowmere\\config\\";
    for (std::size_t line = 0; line < expected.size(); line = expected.find('\n', line) + 1) {
        expected.insert(line, folder);
    }
    EXPECT_EQ(checked.out, expected);
    EXPECT_EQ(checked.code, 1);
    for (std::size_t column = 0; column < kAlternateColumns; ++column)
        EXPECT_EQ(area().alternates.cells[0][column], column == 0 ? kNone16 : static_cast<std::int32_t>(column) + 1);
}

} // namespace
} // namespace tallowmere::test

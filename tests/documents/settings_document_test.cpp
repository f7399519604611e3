// The files that docs/settings.md shows are taken as it says.
#include "core/config/alternate_table.hpp"
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
        put(u"calibration\\ZAN_CAL_Awa.txt", "text calibration/ZAN_CAL_Awa.txt");
        put(u"calibration\\ZAN_CAL_Bsp.txt", "text calibration/ZAN_CAL_Bsp.txt");
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
    CalibrationItem& awa = host.calibration().item(calibration_item::kAwa);
    EXPECT_EQ(awa.table.sharedColumns, 1);
    EXPECT_EQ(eval(awa, 45.0, 5.0), 1.0);
    EXPECT_EQ(eval(awa, 90.0, 15.0), 1.0);
    CalibrationItem& bsp = host.calibration().item(calibration_item::kBsp);
    EXPECT_EQ(bsp.table.sharedColumns, 0);
    EXPECT_EQ(eval(bsp, 10.0, 0.0), 0.1);
    EXPECT_EQ(eval(bsp, 10.0, 20.0), 0.3);
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

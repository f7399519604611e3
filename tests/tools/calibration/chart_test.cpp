#include "tests/support/temporary_folder.hpp"
#include "tests/tools/calibration/calibration_command_fixture.hpp"
#include "tools/calibration/svg_chart.hpp"
#include "tools/calibration/text_chart.hpp"

#include <filesystem>
#include <fstream>
#include <limits>

namespace tallowmere::test {
namespace {

class ChartTest : public CalibrationCommandTest {
  protected:
    static CalibrationItem itemOf(std::vector<std::pair<double, double>> knots) {
        CalibrationItem item;
        item.name = u"A <b> & \"c\"";
        item.columnInput = ZAN_AWA;
        item.rowInput = ZAN_AWS;
        item.channel = ZAN_AWA;
        item.table.rows.resize(2);
        for (CurveRow& row : item.table.rows) {
            for (const auto& [x, y] : knots) row.knots.push_back({x, y, NO_VALUE});
            row.dirty = 1;
        }
        return item;
    }
    /// The elements of a document; none when it is malformed.
    std::vector<platform::XmlElement> elementsOf(const std::string& svg) {
        machine.addFile(u"C:\\picture.svg", svg);
        const auto reader = platform.openXml(u"C:\\picture.svg");
        std::vector<platform::XmlElement> elements;
        platform::XmlElement element;
        while (reader->next(element)) elements.push_back(element);
        EXPECT_FALSE(reader->malformed());
        return elements;
    }
};

std::size_t countOf(const std::vector<platform::XmlElement>& elements, std::u16string_view name) {
    return static_cast<std::size_t>(std::ranges::count(elements, name, &platform::XmlElement::name));
}

TEST_F(ChartTest, SvgHasACurveForEachRowAndADotForEachKnot) {
    CalibrationItem item = itemOf({{0, 1}, {45, 3}, {180, 0}});
    const auto elements = elementsOf(tools::svgChart(tools::makeChart(5, item)));
    EXPECT_EQ(countOf(elements, u"svg"), 1U);
    EXPECT_EQ(countOf(elements, u"polyline"), 2U);
    EXPECT_EQ(countOf(elements, u"circle"), 6U);
}

TEST_F(ChartTest, MissingValuesBreakStraightLines) {
    CalibrationItem item = itemOf({{0, 1}, {45, 3}, {90, NO_VALUE}, {135, 2}, {180, 0}});
    item.table.linear = 1;
    const tools::Chart chart = tools::makeChart(5, item);
    EXPECT_EQ(chart.series[0].lines.size(), 2U);
    EXPECT_EQ(chart.left, 2U);
}

TEST_F(ChartTest, NoNumberIsTooStrangeToDraw) {
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const auto& knots : std::vector<std::vector<std::pair<double, double>>>{{},
                                                                                 {{0, 0}},
                                                                                 {{NO_VALUE, NO_VALUE}},
                                                                                 {{inf, nan}, {nan, inf}},
                                                                                 {{0, 1e308}, {1, -1e308}},
                                                                                 {{1e9, 1e9}, {-1e9, -1e9}},
                                                                                 {{5, 1}, {5, 2}, {5, 3}},
                                                                                 {{0, 1e-300}, {1e-300, 0}},
                                                                                 {{3, 1}, {1, 1}, {2, 1}},
                                                                                 {{1e9, 1}, {999999999.9999999, 2}}}) {
        CalibrationItem item = itemOf(knots);
        const tools::Chart chart = tools::makeChart(0, item);
        const std::string svg = tools::svgChart(chart);
        for (const char* bad : {"nan", "inf"}) EXPECT_EQ(svg.find(bad), std::string::npos);
        EXPECT_FALSE(elementsOf(svg).empty());
        for (const int across : {0, 80, 100000}) EXPECT_TRUE(isHarmless(tools::textChart(chart, across, false)));
    }
}

TEST_F(ChartTest, TicksAreRound) {
    EXPECT_EQ(tools::makeTicks({0, 180}, 10, true).at, (std::vector<double>{0, 30, 60, 90, 120, 150, 180}));
    EXPECT_EQ(tools::makeTicks({0, 10}, 5, false).at, (std::vector<double>{0, 2, 4, 6, 8, 10}));
    const tools::Ticks ticks = tools::makeTicks({-0.25, 0.25}, 5, false);
    EXPECT_EQ(ticks.label(ticks.at.front()), "\u22120.2");
    EXPECT_EQ(ticks.label(-0.0), "0.0");
}

TEST_F(ChartTest, TerminalPictureFitsItsColumns) {
    CalibrationItem item = itemOf({{0, 1}, {45, 3}, {180, 0}});
    const std::string text = tools::textChart(tools::makeChart(5, item), 60, false);
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const auto characters =
            std::ranges::count_if(line, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; });
        EXPECT_LE(characters, 60) << line;
    }
    EXPECT_NE(text.find("b AWS"), std::string::npos);
    EXPECT_NE(tools::textChart(tools::makeChart(5, item), 60, true).find("\x1b[34m"), std::string::npos);
}

TEST_F(ChartTest, PlotWritesAFile) {
    putItem(u"Awa", "0 90 180\n0 0 0 0\n10 1 2 1\n");
    const TemporaryFolder folder;
    const auto file = folder.path() / "awa.svg";
    EXPECT_EQ(run({"calibration", "plot", "awa", "-o", file.string()}).code, 0);
    std::ifstream in(file, std::ios::binary);
    const std::string svg{std::istreambuf_iterator<char>(in), {}};
    in.close();
    std::filesystem::remove(file);
    EXPECT_EQ(countOf(elementsOf(svg), u"polyline"), 2U);
    EXPECT_EQ(run({"calibration", "plot", "awa", "-o", (file / "x").string()}).code, 3);
    EXPECT_EQ(run({"calibration", "plot", "hdg"}).code, 1);
}

} // namespace
} // namespace tallowmere::test

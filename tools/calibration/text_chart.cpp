#include "tools/calibration/text_chart.hpp"

#include "tools/commands/text.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace tallowmere::tools {
namespace {

constexpr int kRows = 20;
constexpr int kDotsAcross = 2; // of one character
constexpr int kDotsDown = 4;
constexpr std::array<int, 6> kColours{34, 36, 32, 33, 31, 35};
// By column and row of the dot.
constexpr std::uint8_t kDots[kDotsAcross][kDotsDown] = {{0x01, 0x02, 0x04, 0x40}, {0x08, 0x10, 0x20, 0x80}};

struct Cell {
    std::uint8_t dots = 0;
    char mark = 0; // a knot's letter or a line of the frame
    std::size_t series = 0;
    bool grid = false;
};

char letterOf(std::size_t series) {
    return static_cast<char>('a' + static_cast<int>(series % 26));
}

std::string brailleOf(std::uint8_t dots) {
    const unsigned code = 0x2800U + dots;
    return {static_cast<char>(0xE0U | code >> 12), static_cast<char>(0x80U | (code >> 6 & 0x3FU)),
            static_cast<char>(0x80U | (code & 0x3FU))};
}

std::string padded(const std::string& text, std::size_t columns) {
    return std::string(columns - std::min(columns, width(text)), ' ') + text;
}

class TextWriter {
  public:
    TextWriter(const Chart& chart, int columns, bool colours) : chart_(chart), colours_(colours) {
        xTicks_ = makeTicks(chart.x, columns / 12, chart.xIsAngle);
        yTicks_ = makeTicks(chart.y, 6, false);
        for (const double tick : yTicks_.at) margin_ = std::max(margin_, width(yTicks_.label(tick)));
        across_ = std::max(columns - static_cast<int>(margin_) - 3, 10);
        cells_.resize(static_cast<std::size_t>(across_ * kRows));
    }

    std::string write() {
        for (const double tick : yTicks_.at)
            for (int column = 0; column < across_; ++column) cell(column, dotRow(tick) / kDotsDown).grid = true;
        for (std::size_t s = 0; s < chart_.series.size(); ++s) draw(s);
        for (std::size_t s = 0; s < chart_.series.size(); ++s) mark(s);
        std::string text = chart_.title + ": " + chart_.subtitle + "\n" + chart_.yTitle + "\n";
        for (int row = 0; row < kRows; ++row) text += rowText(row);
        return text + axisText() + legendText();
    }

  private:
    [[nodiscard]] Cell& cell(int column, int row) { return cells_[static_cast<std::size_t>(row * across_ + column)]; }
    static int placed(double value, Range range, int dots) {
        const double place = (value - range.low) / (range.high - range.low) * (dots - 1);
        return static_cast<int>(std::lround(std::clamp(place, 0.0, static_cast<double>(dots - 1))));
    }
    [[nodiscard]] int dotColumn(double x) const { return placed(x, chart_.x, across_ * kDotsAcross); }
    [[nodiscard]] int dotRow(double y) const { return kRows * kDotsDown - 1 - placed(y, chart_.y, kRows * kDotsDown); }

    void dot(int x, int y, std::size_t series) {
        Cell& at = cell(x / kDotsAcross, y / kDotsDown);
        at.dots = static_cast<std::uint8_t>(at.dots | kDots[x % kDotsAcross][y % kDotsDown]);
        at.series = series;
    }

    void stroke(int x0, int y0, int x1, int y1, std::size_t series) {
        const int steps = std::max({std::abs(x1 - x0), std::abs(y1 - y0), 1});
        for (int k = 0; k <= steps; ++k) dot(x0 + (x1 - x0) * k / steps, y0 + (y1 - y0) * k / steps, series);
    }

    void draw(std::size_t index) {
        for (const auto& line : chart_.series[index].lines)
            for (std::size_t k = 0; k < line.size(); ++k) {
                const Point& from = line[k == 0 ? 0 : k - 1];
                stroke(dotColumn(from.x), dotRow(from.y), dotColumn(line[k].x), dotRow(line[k].y), index);
            }
    }

    void mark(std::size_t index) {
        for (const Point& knot : chart_.series[index].knots) {
            Cell& at = cell(dotColumn(knot.x) / kDotsAcross, dotRow(knot.y) / kDotsDown);
            at.mark = at.mark != 0 && at.mark != letterOf(index) ? '*' : letterOf(index);
            at.series = index;
        }
    }

    [[nodiscard]] std::string inColour(std::size_t series, const std::string& text) const {
        if (!colours_) return text;
        return "\x1b[" + std::to_string(kColours[series % kColours.size()]) + "m" + text + "\x1b[0m";
    }

    std::string rowText(int row) {
        std::string label;
        for (const double tick : yTicks_.at)
            if (dotRow(tick) / kDotsDown == row) label = yTicks_.label(tick);
        std::string text = padded(label, margin_) + (label.empty() ? " \u2502" : " \u253C");
        std::string blanks; // at a line's end they are left out
        for (int column = 0; column < across_; ++column) {
            const Cell& at = cell(column, row);
            if (at.mark == 0 && at.dots == 0 && !at.grid) {
                blanks += ' ';
                continue;
            }
            text += blanks;
            blanks.clear();
            if (at.mark != 0)
                text += inColour(at.series, std::string(1, at.mark));
            else
                text += at.dots != 0 ? inColour(at.series, brailleOf(at.dots)) : "\u2508";
        }
        return text + "\n";
    }

    [[nodiscard]] std::string axisText() const {
        std::string axis = std::string(margin_, ' ') + " \u2514";
        std::vector<bool> ticked(static_cast<std::size_t>(across_));
        std::string labels;
        for (const double tick : xTicks_.at) {
            const int column = dotColumn(tick) / kDotsAcross;
            ticked[static_cast<std::size_t>(column)] = true;
            const std::string label = xTicks_.label(tick);
            const int start = static_cast<int>(margin_) + 2 + column - static_cast<int>(width(label)) / 2;
            if (start <= static_cast<int>(width(labels)) && !labels.empty()) continue;
            labels += std::string(static_cast<std::size_t>(std::max(start - static_cast<int>(width(labels)), 0)), ' ') +
                      label;
        }
        for (const bool tick : ticked) axis += tick ? "\u2534" : "\u2500";
        const std::string title = chart_.xTitle.empty() ? "" : std::string(margin_ + 2, ' ') + chart_.xTitle + "\n";
        return axis + "\n" + labels + "\n" + title;
    }

    [[nodiscard]] std::string legendText() const {
        if (chart_.series.empty()) return "no values\n";
        if (chart_.series.size() == 1) return "";
        std::string text = "\n";
        std::size_t used = 0;
        for (std::size_t s = 0; s < chart_.series.size(); ++s) {
            const std::string entry = std::string(1, letterOf(s)) + " " + chart_.series[s].label;
            const std::size_t needs = width(entry) + 3;
            if (used != 0 && used + needs > margin_ + static_cast<std::size_t>(across_)) {
                text += "\n";
                used = 0;
            }
            text += (used == 0 ? "" : "   ") + inColour(s, entry);
            used += needs;
        }
        return text + "\n";
    }

    const Chart& chart_;
    bool colours_;
    Ticks xTicks_;
    Ticks yTicks_;
    std::size_t margin_ = 0;
    int across_ = 0;
    std::vector<Cell> cells_;
};

} // namespace

std::string textChart(const Chart& chart, int columns, bool colours) {
    return TextWriter(chart, std::clamp(columns, 40, 160), colours).write();
}

} // namespace tallowmere::tools

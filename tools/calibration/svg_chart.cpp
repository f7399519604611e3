#include "tools/calibration/svg_chart.hpp"

#include "tools/chart/svg_document.hpp"
#include "tools/commands/text.hpp"

#include <array>
#include <cmath>
#include <cstdio>

namespace tallowmere::tools {
namespace {

constexpr double kWidth = 900;
constexpr double kHeight = 540;
constexpr double kLeftEdge = 76;
constexpr double kTop = 72;
constexpr double kBottom = kHeight - 64;
constexpr double kLegendWidth = 140;
constexpr double kLegendStep = 18;
constexpr double kAir = 0.04; // of the height, above and below the curves

// From the first row to the last: dark blue, teal, green, ochre, red. Each is readable on white.
struct Colour {
    double red, green, blue;
};
constexpr std::array<Colour, 5> kScale{{{38, 70, 160}, {20, 140, 160}, {70, 150, 60}, {210, 140, 20}, {190, 40, 50}}};

std::string colourOf(std::size_t index, std::size_t count) {
    const double place = count < 2 ? 0.0
                                   : static_cast<double>(index) / static_cast<double>(count - 1) *
                                         static_cast<double>(kScale.size() - 1);
    const auto lower = std::min(static_cast<std::size_t>(place), kScale.size() - 2);
    const double part = place - static_cast<double>(lower);
    const auto mix = [part](double a, double b) {
        return static_cast<unsigned>(std::lround(a + (b - a) * part)) & 0xFFU;
    };
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", mix(kScale[lower].red, kScale[lower + 1].red),
                  mix(kScale[lower].green, kScale[lower + 1].green), mix(kScale[lower].blue, kScale[lower + 1].blue));
    return text;
}

class SvgWriter {
  public:
    explicit SvgWriter(const Chart& chart)
        : chart_(chart), legend_(chart.series.size() > 1), right_(kWidth - (legend_ ? kLegendWidth : 32)) {
        const double air = (chart.y.high - chart.y.low) * kAir;
        y_ = {chart.y.low - air, chart.y.high + air};
    }

    std::string write() {
        titles();
        xAxis();
        yAxis();
        for (std::size_t s = 0; s < chart_.series.size(); ++s) series(s);
        if (legend_) legend();
        return svg_.finish();
    }

  private:
    [[nodiscard]] double px(double x) const {
        return kLeftEdge + (x - chart_.x.low) / (chart_.x.high - chart_.x.low) * (right_ - kLeftEdge);
    }
    [[nodiscard]] double py(double y) const { return kBottom - (y - y_.low) / (y_.high - y_.low) * (kBottom - kTop); }

    void titles() {
        svg_.text(kLeftEdge, 32, "font-size=\"20\" font-weight=\"bold\"", chart_.title);
        svg_.text(kLeftEdge, 54, "fill=\"#666\"", chart_.subtitle);
        svg_.text((kLeftEdge + right_) / 2, kHeight - 18, "text-anchor=\"middle\" font-size=\"14\"", chart_.xTitle);
        const double middle = (kTop + kBottom) / 2;
        svg_.text(22, middle,
                  "text-anchor=\"middle\" font-size=\"14\" transform=\"rotate(-90 22 " + svgNumber(middle) + ")\"",
                  chart_.yTitle);
        const bool empty = std::ranges::all_of(chart_.series, [](const Series& s) { return s.knots.empty(); });
        if (empty)
            svg_.text((kLeftEdge + right_) / 2, middle, "text-anchor=\"middle\" font-size=\"18\" fill=\"#999\"",
                      "no values");
    }

    void xAxis() {
        const Ticks ticks = makeTicks(chart_.x, 10, chart_.xIsAngle);
        for (const double tick : ticks.at) {
            svg_.line(px(tick), kTop, px(tick), kBottom, "stroke=\"#e4e4e4\"");
            svg_.text(px(tick), kBottom + 20, "text-anchor=\"middle\"", ticks.label(tick));
        }
        svg_.line(kLeftEdge, kBottom, right_, kBottom, "stroke=\"#888\"");
    }

    void yAxis() {
        const Ticks ticks = makeTicks(y_, 8, false);
        for (const double tick : ticks.at) {
            const bool zero = std::fabs(tick) < (y_.high - y_.low) * 1e-9;
            svg_.line(kLeftEdge, py(tick), right_, py(tick),
                      zero ? "stroke=\"#666\" stroke-width=\"1.2\"" : "stroke=\"#e4e4e4\"");
            svg_.text(kLeftEdge - 8, py(tick) + 4.5, "text-anchor=\"end\"", ticks.label(tick));
        }
        svg_.line(kLeftEdge, kTop, kLeftEdge, kBottom, "stroke=\"#888\"");
    }

    void series(std::size_t index) {
        const Series& drawn = chart_.series[index];
        const std::string colour = colourOf(index, chart_.series.size());
        for (const auto& piece : drawn.lines) {
            svg_.beginLine("stroke-width=\"2\" stroke=\"" + colour + "\"");
            for (const Point& point : piece) svg_.addPoint(px(point.x), py(point.y));
            svg_.endLine();
        }
        for (const Point& knot : drawn.knots)
            svg_.circle(px(knot.x), py(knot.y), 4, "stroke=\"#fff\" stroke-width=\"1.2\" fill=\"" + colour + "\"");
    }

    /// The last row on top: as the rows' values grow, so do the lines in the legend.
    void legend() {
        const std::size_t count = chart_.series.size();
        for (std::size_t s = 0; s < count; ++s) {
            const double y = kTop + 8 + kLegendStep * static_cast<double>(count - 1 - s);
            svg_.line(right_ + 16, y, right_ + 38, y, "stroke-width=\"3\" stroke=\"" + colourOf(s, count) + "\"");
            svg_.text(right_ + 46, y + 4.5, "font-size=\"12\"", cutToWidth(chart_.series[s].label, 14));
        }
    }

    const Chart& chart_;
    bool legend_;
    double right_;
    Range y_{0, 1};
    SvgDocument svg_{kWidth, kHeight};
};

} // namespace

std::string svgChart(const Chart& chart) {
    return SvgWriter(chart).write();
}

} // namespace tallowmere::tools

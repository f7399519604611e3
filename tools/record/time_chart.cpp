#include "tools/record/time_chart.hpp"

#include "tools/chart/svg_document.hpp"
#include "tools/record/time_axis.hpp"

#include <algorithm>
#include <array>
#include <cmath>

namespace tallowmere::recording {
namespace {

constexpr double kWidth = 1000;
constexpr double kLeft = 84;
constexpr double kRight = kWidth - 28;
constexpr double kTop = 72;
constexpr double kPanel = 150;
constexpr double kBetween = 38; // room for the next panel's name
constexpr double kBelow = 50;
constexpr int kMostTimeTicks = 11;
constexpr int kValueTicks = 5;
constexpr std::array kColours{"#2646a0", "#be2832", "#46963c", "#148ca0", "#b4780f", "#7a3f9d"};

struct Place {
    double x;
    double y;
};

/// Of points that share a column of the picture, those that show: the first, the lowest, the highest, the last.
class Column {
  public:
    explicit Column(tools::SvgDocument& svg) : svg_(svg) {}
    ~Column() { flush(); }
    Column(const Column&) = delete;
    Column& operator=(const Column&) = delete;

    void add(Place place) {
        if (count_ != 0 && std::floor(place.x * kPerUnit) != std::floor(first_.x * kPerUnit)) flush();
        if (count_++ == 0) first_ = low_ = high_ = place;
        if (place.y < low_.y) low_ = place;
        if (place.y > high_.y) high_ = place;
        last_ = place;
    }

  private:
    static constexpr double kPerUnit = 2.0;

    void flush() {
        if (count_ > 0) put(first_);
        const bool lowFirst = low_.x <= high_.x;
        if (count_ > 3) put(lowFirst ? low_ : high_);
        if (count_ > 2) put(count_ > 3 ? (lowFirst ? high_ : low_) : middle());
        if (count_ > 1) put(last_);
        count_ = 0;
    }
    /// Of three points the one that is neither first nor last, unless it lies between them.
    [[nodiscard]] Place middle() const { return low_.y < std::min(first_.y, last_.y) ? low_ : high_; }
    void put(Place place) { svg_.addPoint(place.x, place.y); }

    tools::SvgDocument& svg_;
    std::size_t count_ = 0;
    Place first_{}, low_{}, high_{}, last_{};
};

class TimeChartWriter {
  public:
    explicit TimeChartWriter(const TimeChart& chart)
        : chart_(chart), ticks_(makeTimeTicks(chart.from, chart.to, kMostTimeTicks)),
          bottom_(kTop + static_cast<double>(chart.series.size()) * (kPanel + kBetween) - kBetween + 24),
          svg_(kWidth, bottom_ + kBelow) {}

    std::string write() {
        svg_.text(kLeft, 28, R"(font-size="20" font-weight="bold")", chart_.title);
        svg_.text(kLeft, 48, R"(fill="#666")", chart_.subtitle);
        for (std::size_t index = 0; index < chart_.series.size(); ++index)
            panel(chart_.series[index], kTop + 24 + static_cast<double>(index) * (kPanel + kBetween),
                  kColours[index % kColours.size()]);
        timeLabels();
        return svg_.finish();
    }

  private:
    [[nodiscard]] double px(std::int64_t time) const {
        return kLeft + static_cast<double>(time - chart_.from) / static_cast<double>(chart_.to - chart_.from) *
                           (kRight - kLeft);
    }

    void panel(const TimeSeries& series, double top, const char* colour) {
        const Drawing drawing = draw(series);
        const auto py = [&](double value) {
            return top + kPanel - (value - drawing.y.low) / (drawing.y.high - drawing.y.low) * kPanel;
        };
        const ChannelInfo& channel = series.channel;
        const std::string& name = channel.name.empty() ? channel.longName : channel.name;
        svg_.text(kLeft, top - 8, R"(font-size="14" font-weight="bold")",
                  channel.unit.empty() ? name : name + " (" + channel.unit + ")");
        for (const TimeTick& tick : ticks_) svg_.line(px(tick.at), top, px(tick.at), top + kPanel, kGrid);
        const tools::Ticks ticks = tools::makeTicks(drawing.y, kValueTicks, drawing.angle);
        for (const double tick : drawing.lines.empty() ? std::vector<double>() : ticks.at) {
            svg_.line(kLeft, py(tick), kRight, py(tick), kGrid);
            svg_.text(kLeft - 8, py(tick) + 4.5, R"(text-anchor="end")", ticks.label(drawing.shown(tick)));
        }
        svg_.rectangle(kLeft, top, kRight - kLeft, kPanel, R"(fill="none" stroke="#888")");
        for (const auto& line : drawing.lines) lineOf(line, py, colour);
        if (drawing.lines.empty())
            svg_.text((kLeft + kRight) / 2, top + kPanel / 2 + 6, R"(text-anchor="middle" font-size="18" fill="#999")",
                      "no values");
    }

    template <class Py> void lineOf(const std::vector<TimePoint>& line, Py py, const std::string& colour) {
        if (line.size() == 1)
            return svg_.circle(px(line.front().time), py(line.front().value), 2.2, "fill=\"" + colour + "\"");
        svg_.beginLine("stroke-width=\"1.5\" stroke=\"" + colour + "\"");
        {
            Column column(svg_);
            for (const TimePoint& point : line) column.add({px(point.time), py(point.value)});
        }
        svg_.endLine();
    }

    void timeLabels() {
        const double dayRow = ticks_.empty() || ticks_.front().time.empty() ? 20 : 38;
        for (const TimeTick& tick : ticks_) {
            svg_.text(px(tick.at), bottom_ + 20, R"(text-anchor="middle")", tick.time);
            if (!tick.day.empty())
                svg_.text(px(tick.at), bottom_ + dayRow, R"(text-anchor="middle" fill="#666")", tick.day);
        }
        svg_.text(12, bottom_ + 20, R"(fill="#666")", "UTC"); // left of any label
    }

    static constexpr char kGrid[] = R"(stroke="#e4e4e4")";

    const TimeChart& chart_;
    std::vector<TimeTick> ticks_;
    double bottom_; // of the last panel
    tools::SvgDocument svg_;
};

} // namespace

std::string svgTimeChart(const TimeChart& chart) {
    return TimeChartWriter(chart).write();
}

} // namespace tallowmere::recording

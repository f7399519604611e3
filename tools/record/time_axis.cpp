#include "tools/record/time_axis.hpp"

#include "core/channels/time_scale.hpp"
#include "tools/record/moment_text.hpp"

#include <array>

namespace tallowmere::recording {
namespace {

constexpr std::int64_t kMillisecond = kTicksPerSecond / 1000;
constexpr std::int64_t kMinute = 60 * kTicksPerSecond;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;

// What a clock's face knows; a day begins with a tick of each step up to a day.
constexpr std::array kSteps{100 * kMillisecond,
                            200 * kMillisecond,
                            500 * kMillisecond,
                            kTicksPerSecond,
                            2 * kTicksPerSecond,
                            5 * kTicksPerSecond,
                            10 * kTicksPerSecond,
                            15 * kTicksPerSecond,
                            30 * kTicksPerSecond,
                            kMinute,
                            2 * kMinute,
                            5 * kMinute,
                            10 * kMinute,
                            15 * kMinute,
                            30 * kMinute,
                            kHour,
                            2 * kHour,
                            3 * kHour,
                            6 * kHour,
                            12 * kHour,
                            kDay};

std::int64_t stepFor(std::int64_t span, int most) noexcept {
    for (const std::int64_t step : kSteps)
        if (span / step < most) return step;
    std::int64_t days = kDay;
    while (span / days >= most) days *= 2;
    return days;
}

std::string timeText(const std::string& moment, std::int64_t step) {
    if (step >= kDay) return {};
    if (step >= kMinute) return moment.substr(11, 5);
    return moment.substr(11, step >= kTicksPerSecond ? 8 : 10);
}

/// "2025-11-21T..." as "21 Nov 2025"
std::string dayText(const std::string& moment) {
    constexpr std::array months{"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto month = static_cast<std::size_t>((moment[5] - '0') * 10 + (moment[6] - '0') - 1);
    const std::size_t zero = moment[8] == '0' ? 1 : 0;
    return moment.substr(8 + zero, 2 - zero) + " " + months.at(month) + " " + moment.substr(0, 4);
}

} // namespace

std::vector<TimeTick> makeTimeTicks(std::int64_t from, std::int64_t to, int most) {
    const std::int64_t step = stepFor(to - from, most);
    std::vector<TimeTick> ticks;
    for (std::int64_t at = (from + step - 1) / step * step; at <= to; at += step) {
        const std::string moment = momentText(at);
        const bool named = ticks.empty() || at % kDay == 0;
        ticks.push_back({at, timeText(moment, step), named ? dayText(moment) : std::string()});
    }
    return ticks;
}

} // namespace tallowmere::recording

#include "tools/chart/ticks.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace tallowmere::tools {

Ticks makeTicks(Range range, int wanted, bool angle) {
    const double span = range.high - range.low;
    double step = std::pow(10.0, std::floor(std::log10(span / wanted)));
    for (const double factor : {2.0, 2.5, 2.0}) // 2, 5, 10 times the power of ten
        if (span / step > wanted) step *= factor;
    if (angle && step > 5.0 && span <= 720.0)
        for (const double compass : {10.0, 15.0, 30.0, 45.0, 90.0}) {
            step = compass;
            if (span / step <= wanted) break;
        }
    Ticks ticks;
    ticks.decimals = std::clamp(static_cast<int>(-std::floor(std::log10(step) + 1e-9)), 0, 6);
    const double slack = step * 1e-9;
    const double first = std::ceil((range.low - slack) / step);
    for (int k = 0; k < 100 && (first + k) * step <= range.high + slack; ++k) ticks.at.push_back((first + k) * step);
    return ticks;
}

std::string Ticks::label(double value) const {
    char text[64];
    const int length = std::snprintf(text, sizeof text, "%.*f", decimals, value);
    std::string label(text, static_cast<std::size_t>(std::clamp(length, 0, 63)));
    if (!label.starts_with('-')) return label;
    label.erase(0, 1);
    return label.find_first_not_of("0.") == std::string::npos ? label : "\u2212" + label;
}

} // namespace tallowmere::tools

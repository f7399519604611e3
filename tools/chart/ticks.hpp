// Axes of charts.
#pragma once

#include <string>
#include <vector>

namespace tallowmere::tools {

/// A stretch of one axis. low < high, both finite.
struct Range {
    double low;
    double high;
};

/// Round numbers within a range, about `wanted` of them, and how many decimals they need.
struct Ticks {
    std::vector<double> at;
    int decimals = 0;

    /// "-5", "0.25"; with a typographic minus sign.
    [[nodiscard]] std::string label(double value) const;
};
[[nodiscard]] Ticks makeTicks(Range range, int wanted, bool angle);

} // namespace tallowmere::tools

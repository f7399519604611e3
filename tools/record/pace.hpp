// Waiting, and counting how long it took, whatever is done to the wall clock meanwhile.
#pragma once

#include "core/channels/time_scale.hpp"
#include "tools/commands/command_context.hpp"

#include <algorithm>
#include <cstdint>

namespace tallowmere::recording {

/// The time that has passed by a clock that may be set: steps back, and forth by more than ten minutes, count as
/// none.
class Elapsed {
  public:
    explicit Elapsed(std::int64_t now) noexcept : last_(now) {}
    void meet(std::int64_t now) noexcept {
        const std::int64_t step = now - last_;
        if (step > 0 && step <= 600 * kTicksPerSecond) ticks_ += step;
        last_ = now;
    }
    [[nodiscard]] std::int64_t ticks() const noexcept { return ticks_; }
    [[nodiscard]] double seconds() const noexcept {
        return static_cast<double>(ticks_) / static_cast<double>(kTicksPerSecond);
    }

  private:
    std::int64_t last_;
    std::int64_t ticks_ = 0;
};

/// Sleeps in pieces that are short enough to hear a request to end. False when there was one.
inline bool pause(const tools::CommandContext& context, std::int64_t milliseconds) {
    constexpr std::int64_t longest = 50;
    while (milliseconds > 0 && !context.stop) {
        const std::int64_t piece = std::min(milliseconds, longest);
        context.platform.sleepMilliseconds(static_cast<unsigned>(piece));
        milliseconds -= piece;
    }
    return !context.stop;
}

} // namespace tallowmere::recording

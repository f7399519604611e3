// Where in a recording the player is, and which moment of now belongs to it.
#pragma once

#include "core/channels/time_scale.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace tallowmere::recording {

class ReplayClock {
  public:
    /// A longer time without any row is not waited for.
    static constexpr std::int64_t kLongestGap = 3600 * kTicksPerSecond;

    /// speed   times as fast as recorded; 0: at once
    explicit ReplayClock(double speed) noexcept : speed_(speed) {}

    /// From here on the recording's `start` is `now`; both moments.
    void begin(std::int64_t start, std::int64_t now) noexcept {
        start_ = position_ = start;
        now_ = now;
    }
    /// Goes on to a row of this time, but not back: a value with an older stamp came when its row did.
    /// True when it lies beyond a gap that is skipped; it is then due now.
    bool meet(std::int64_t time, std::int64_t now) noexcept {
        if (time - position_ > kLongestGap) {
            begin(time, now);
            return true;
        }
        position_ = std::max(position_, time);
        return false;
    }

    [[nodiscard]] std::int64_t position() const noexcept { return position_; }
    /// When the position is due; `now` when nothing is waited for.
    [[nodiscard]] std::int64_t due(std::int64_t now) const noexcept { return speed_ == 0.0 ? now : moved(position_); }
    /// The stamp of a value that was written at this time: as far from the due time of the recording's start, in
    /// whole, at the recorded speed. What was old at the start keeps its age.
    [[nodiscard]] std::int64_t stamp(std::int64_t time, std::int64_t now) const noexcept {
        return speed_ == 0.0 && time >= start_ ? now : moved(time);
    }

  private:
    [[nodiscard]] std::int64_t moved(std::int64_t time) const noexcept {
        const std::int64_t passed = time - start_;
        if (speed_ == 1.0 || passed <= 0) return now_ + passed;
        return now_ + std::llround(static_cast<double>(passed) / speed_);
    }

    double speed_;
    std::int64_t start_ = 0;
    std::int64_t position_ = 0;
    std::int64_t now_ = 0;
};

} // namespace tallowmere::recording

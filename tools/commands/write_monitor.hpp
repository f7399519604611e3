// What can be told of a channel's writers from outside, by looking at its stamp and value now and then.
//
// The section keeps one stamp and one value a channel, and no writer's name. Of several writes between two looks
// only the last is seen. So a rate is what was seen, and two writers show only in what they leave: a value that
// jumps between two levels.
#pragma once

#include "core/channels/shared_area.hpp"

#include <cstdint>
#include <deque>
#include <span>
#include <vector>

namespace tallowmere::tools {

struct WriteRate {
    bool known = false;     // looked for long enough
    double perSecond = 0.0; // writes seen
    bool atLeast = false;   // half of the looks or more found a new stamp: writes between two looks are lost
    bool twoLevels = false; // probably two writers
};

/// True when values, in the order in which they were written, jump back and forth between two levels: at least
/// twelve values; parted at their widest gap, each side has a quarter of them or more; the gap is three times as
/// wide as either side and at least `leastGap`; and the value has crossed it four times or more.
[[nodiscard]] bool jumpsBetweenTwoLevels(std::span<const double> values, double leastGap);

/// The writes of one boat's channels over the last seconds.
class WriteMonitor {
  public:
    static constexpr std::int64_t kWindow = 50'000'000;  // 5 s: rates are of this time
    static constexpr std::size_t kValues = 16;           // writes that levels are looked for in
    static constexpr std::int64_t kRecent = 600'000'000; // 60 s: a write longer ago tells nothing of levels now

    /// now   100 ns since 1601-01-01 UTC. A clock that was set back begins anew.
    void look(const SharedArea& area, BoatIndex boat, std::int64_t now);
    [[nodiscard]] WriteRate of(ChannelIndex channel) const;
    /// Forgets all: another boat, another section.
    void clear();

  private:
    struct Write {
        std::int64_t seen;
        double value;
    };
    struct Channel {
        bool known = false;
        std::int64_t stamp = 0;
        std::deque<std::int64_t> seen; // within the window
        std::deque<Write> last;        // at most kValues
        double leastGap = 0.0;
        bool angle = false;
    };
    void note(Channel& channel, double value, std::int64_t now) const;

    std::vector<Channel> channels_{kChannelCount};
    std::deque<std::int64_t> looks_; // within the window
};

} // namespace tallowmere::tools

// What can be told of a channel's writers from outside, by looking at its stamp and value now and then.
//
// The section keeps one stamp and one value a channel, and no writer's name. Of several writes between two looks
// only the last is seen. So a rate is what was seen, and two writers show only in what they leave: a value that
// jumps to and fro between two levels.
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

/// True when values, in the order in which they were written, are two sequences in one, each smooth by itself, with
/// jumps between: what two writers leave, whatever their rates.
///
/// The widest step from one value to the next tells how far the two are apart. The first value begins the first
/// sequence, the first one further than half of that away from it the second, and each later value continues the one
/// whose last value is nearer. Then there are two when
///  - there are twelve values or more, and three or more in each sequence,
///  - the values go from one to the other seven times or more,
///  - each value is at least three times as far from the other sequence's last value as any value is from its own
///    sequence's, and at least `leastGap`.
/// The levels may move, together or apart. Noise of one writer fills the room between two such sequences.
[[nodiscard]] bool areTwoSequences(std::span<const double> values, double leastGap);

/// areTwoSequences of the last 16, 32, 64 or 128 values: a slow writer beside a fast one shows in many only, and a
/// sudden change of both must not hide them for long.
[[nodiscard]] bool jumpsBetweenTwoLevels(std::span<const double> values, double leastGap);

/// The writes of one boat's channels over the last seconds.
class WriteMonitor {
  public:
    static constexpr std::int64_t kWindow = 50'000'000;  // 5 s: rates are of this time
    static constexpr std::size_t kValues = 128;          // writes that levels are looked for in
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

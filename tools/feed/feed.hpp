// Lines of NMEA 0183 in, channel values out, and a count of everything met.
#pragma once

#include "tools/feed/channel_sink.hpp"
#include "tools/feed/feed_counts.hpp"
#include "tools/feed/own_boat.hpp"
#include "tools/nmea/ais.hpp"
#include "tools/nmea/line_reading.hpp"
#include "tools/nmea/sentence.hpp"

#include <optional>
#include <set>

namespace tallowmere::feed {

class Feed {
  public:
    /// The sink must outlive the feed.
    explicit Feed(ChannelSink& sink) : sink_(sink), own_(sink, counts_) {}
    Feed(const Feed&) = delete;
    Feed& operator=(const Feed&) = delete;

    /// Takes one line, whatever is in it.
    void take(const nmea::Line& line);

    [[nodiscard]] const FeedCounts& counts() const noexcept { return counts_; }

  private:
    void takeSentence(const nmea::Sentence& sentence);
    void takeVdm(const nmea::Sentence& sentence);
    void takeReport(const nmea::PositionReport& report);
    void countUnknown(const nmea::Sentence& sentence);
    void rememberDamage(const nmea::Line& line, const nmea::LineReading& reading);

    FeedCounts counts_;
    ChannelSink& sink_;
    OwnBoat own_;
    std::set<BoatIndex> boatsSeen_;
};

/// The time of day (seconds) that a line carries, if it is a whole RMC, ZDA, GGA or GLL sentence that does.
[[nodiscard]] std::optional<double> timeIn(const nmea::Line& line) noexcept;

} // namespace tallowmere::feed

// The own boat as the sentences see it: a place for values, and the knowledge of the magnetic variation.
#pragma once

#include "tools/feed/channel_sink.hpp"
#include "tools/feed/feed_counts.hpp"

#include <optional>

namespace tallowmere::feed {

class OwnBoat {
  public:
    /// Both must outlive this object.
    OwnBoat(ChannelSink& sink, FeedCounts& counts) noexcept : sink_(sink), counts_(counts) {}

    /// Writes a value in the channel's base unit; nothing when it is absent or implausible.
    void set(ChannelIndex channel, std::optional<double> value);

    /// Writes an angle off the bow given as 0 to 360 or -180 to 180 as the latter.
    void setWindAngle(ChannelIndex channel, std::optional<double> degrees);

    /// Remembers the variation (degrees, east positive) and writes it to its channel.
    void learnVariation(std::optional<double> degrees);

    /// A magnetic bearing as a true one. Absent, and counted, when no variation is known.
    [[nodiscard]] std::optional<double> trueFromMagnetic(std::optional<double> degrees);

  private:
    ChannelSink& sink_;
    FeedCounts& counts_;
    std::optional<double> variation_;
};

/// Writes one value of any boat and counts what became of it.
void writeValue(ChannelSink& sink, FeedCounts& counts, ChannelIndex channel, std::optional<double> value,
                BoatIndex boat);

} // namespace tallowmere::feed

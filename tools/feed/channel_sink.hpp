// Where the feed puts what it has understood.
#pragma once

#include "core/channels/catalogue.hpp"

#include <cstdint>
#include <optional>

namespace tallowmere::feed {

class ChannelSink {
  public:
    /// A value in the channel's base unit (days since 1899-12-30 for moments). False when it was not stored.
    virtual bool write(ChannelIndex channel, double value, BoatIndex boat) = 0;

    /// The own boat's value of a channel, if it has one.
    [[nodiscard]] virtual std::optional<double> read(ChannelIndex channel) const = 0;

    /// The boat with an MMSI (1 to 999999999): 0 for the own boat, else the one that carries it already, else
    /// the lowest unused boat, which carries it from now on. Empty when none is left.
    [[nodiscard]] virtual std::optional<BoatIndex> boatFor(std::uint32_t mmsi) = 0;

  protected:
    ~ChannelSink() = default;
};

} // namespace tallowmere::feed

// The feed's channels are those of the shared section.
#pragma once

#include "core/channels/value_store.hpp"
#include "tools/feed/channel_sink.hpp"

namespace tallowmere::feed {

class SectionSink final : public ChannelSink {
  public:
    /// The store must outlive this object.
    explicit SectionSink(ValueStore& values) noexcept : values_(values) {}

    bool write(ChannelIndex channel, double value, BoatIndex boat) override;
    [[nodiscard]] std::optional<double> read(ChannelIndex channel) const override;
    /// Looks at the section's boats anew each time: other programs may give boats their MMSI too.
    [[nodiscard]] std::optional<BoatIndex> boatFor(std::uint32_t mmsi) override;

  private:
    ValueStore& values_;
};

} // namespace tallowmere::feed

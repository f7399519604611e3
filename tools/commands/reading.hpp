// What a channel of a boat shows at one moment: value, unit, age.
#pragma once

#include "core/channels/value_store.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace tallowmere::tools {

enum class Freshness { None, Live, Stale };

/// Seconds since a value was written; empty when its stamp makes no sense: none, before 1601, or more than
/// ten seconds ahead of the clock. A stamp a little ahead counts as now.
/// stamp, now   100 ns since 1601-01-01 UTC
[[nodiscard]] std::optional<double> ageSeconds(std::int64_t stamp, std::int64_t now) noexcept;

/// When a channel of a boat was last written; empty when the boat does not keep the channel, when channel
/// or boat is out of range, and without a section. The stamp is not checked.
[[nodiscard]] std::optional<std::int64_t> stampOf(const SharedArea* area, ChannelIndex channel,
                                                  BoatIndex boat) noexcept;

/// Live until the channel's time-out has passed; a value of unknown age is stale. A channel without
/// time-out is never stale.
[[nodiscard]] Freshness freshnessOf(const ValueStore& values, ChannelIndex channel, BoatIndex boat,
                                    std::int64_t now) noexcept;

struct Reading {
    std::string name;        // the channel's; an alternating one with what it stands for: "Alt 0 > BSP"
    std::string value = "-"; // which means none
    std::string unit;        // empty where there is none or the value names it
    std::optional<double> age;
    Freshness freshness = Freshness::None;
};

/// As a client reads: an alternating channel is replaced by what it stands for.
[[nodiscard]] Reading readChannel(const ValueStore& values, ChannelIndex channel, BoatIndex boat, std::int64_t now);

/// The short name, or the long one of the channel that has no short one.
[[nodiscard]] std::string nameOf(const SharedArea* area, ChannelIndex channel);

} // namespace tallowmere::tools

// What a channel of a boat shows at one moment: value, unit, age.
#pragma once

#include "core/channels/value_age.hpp"
#include "core/channels/value_reading.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace tallowmere::tools {

/// When a channel of a boat was last written; empty when the boat does not keep the channel, when channel
/// or boat is out of range, and without a section. The stamp is not checked.
[[nodiscard]] std::optional<std::int64_t> stampOf(const SharedArea* area, ChannelIndex channel,
                                                  BoatIndex boat) noexcept;

/// The freshness of what a channel of a boat holds, itself also when it is alternating.
[[nodiscard]] Freshness freshnessOf(const SharedArea* area, ChannelIndex channel, BoatIndex boat,
                                    std::int64_t now) noexcept;

/// "fresh", "stale", "timeless" (there is a value, and the channel has no time-out) or "none".
[[nodiscard]] const char* stateName(Freshness freshness) noexcept;

/// There is a value, and it counts.
[[nodiscard]] constexpr bool isLive(Freshness freshness) noexcept {
    return freshness == Freshness::Fresh || freshness == Freshness::Timeless;
}

struct Reading {
    std::string name;        // the channel's; an alternating one with what it stands for: "Alt 0 > BSP"
    std::string value = "-"; // which means none
    std::string unit;        // empty where there is none or the value names it
    std::optional<double> age;
    Freshness freshness = Freshness::None;

    // The same for programs.
    ChannelIndex channel = kNone16;
    ChannelIndex source = kNone16;          // that was read: another for an alternating one, 32767 for none
    std::string channelName;                // without what it stands for
    std::string sourceName;                 // empty for none
    UnitClass unitClass = UnitClass::Plain; // of the source
    double number = NO_VALUE;               // in the base unit, times in days; may be NaN or infinite
    std::optional<std::int64_t> moment;     // what a date and time says, 100 ns since 1601-01-01 UTC
    std::optional<std::int64_t> stamp;      // when it was written, unchecked; empty without a value
};

/// As a client reads: an alternating channel is replaced by what it stands for.
[[nodiscard]] Reading readChannel(const SharedArea* area, ChannelIndex channel, BoatIndex boat, std::int64_t now);

/// The short name, or the long one of the channel that has no short one.
[[nodiscard]] std::string nameOf(const SharedArea* area, ChannelIndex channel);

} // namespace tallowmere::tools

// How old a value is, and whether it still counts.
#pragma once

#include "core/channels/catalogue.hpp"
#include "core/channels/time_scale.hpp"

#include <cstdint>
#include <optional>

namespace tallowmere {

/// How far ahead of the clock a stamp may be and still count as now: clocks are set while programs run.
inline constexpr std::int64_t kMostAhead = 10 * kTicksPerSecond;

/// Seconds since a value was written; empty when its stamp makes no sense: none, before 1601, or more than
/// ten seconds ahead of the clock. A stamp a little ahead counts as now.
/// stamp, now   100 ns since 1601-01-01 UTC
[[nodiscard]] constexpr std::optional<double> ageSeconds(std::int64_t stamp, std::int64_t now) noexcept {
    if (stamp <= 0 || stamp == INT64_MAX || now <= 0) return std::nullopt;
    if (stamp <= now) return static_cast<double>(now - stamp) / static_cast<double>(kTicksPerSecond);
    if (stamp - now <= kMostAhead) return 0.0;
    return std::nullopt;
}

enum class Freshness : std::uint8_t {
    None,     // there is no value
    Fresh,    // within the channel's time-out
    Stale,    // beyond it, or of unknown age
    Timeless, // the channel has no time-out
};

/// The freshness of a value that is there. channel below 414
[[nodiscard]] constexpr Freshness freshnessOf(ChannelIndex channel, std::optional<double> age) noexcept {
    const std::uint16_t timeout = kCatalogue[channel].timeoutSeconds;
    if (timeout == 0) return Freshness::Timeless;
    return age && *age <= timeout ? Freshness::Fresh : Freshness::Stale;
}

} // namespace tallowmere

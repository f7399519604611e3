// Moments in text, to the 100 ns that a time stamp counts.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallowmere::recording {

/// What a recording takes for a time: later than 1601, before the year 10000.
[[nodiscard]] bool isMoment(std::int64_t ticks) noexcept;

/// "2025-11-21T12:34:56.1234567Z", in UTC. ticks must be a moment.
[[nodiscard]] std::string momentText(std::int64_t ticks);

/// The reverse; fractions of up to seven digits may be left out, the Z too. Empty for anything else.
[[nodiscard]] std::optional<std::int64_t> parseMoment(std::string_view text) noexcept;

/// A place in a recording as the user says it: a moment, or "+90.5", seconds since the recording's start.
struct Place {
    std::optional<std::int64_t> moment;
    std::int64_t afterStart = 0; // 100 ns, when there is no moment

    /// started   of the recording, a moment
    [[nodiscard]] std::int64_t in(std::int64_t started) const noexcept {
        return moment ? *moment : started + afterStart;
    }
};
[[nodiscard]] std::optional<Place> parsePlace(std::string_view text) noexcept;

} // namespace tallowmere::recording

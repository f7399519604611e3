// The floor that the exported functions are measured against: the same clock reads, loads and stores on
// the same section, bare, without checks or rules.
#pragma once

#include "core/channels/shared_area.hpp"

#include <cstdint>
#include <string>

namespace tallowmere::bench {

/// The clock, read once: 100 ns since 1601-01-01 UTC.
[[nodiscard]] std::int64_t bareNow() noexcept;

/// The stores that stamp the clock channel of the boats in use.
void bareStampTime(SharedArea& area, std::uint32_t boats, std::int64_t now) noexcept;

/// One clock read and the stores of a plain write of BSP (channel 1) for boat 0 with `boats` in use.
void bareWrite(SharedArea& area, double value, std::uint32_t boats) noexcept;

/// Copies the current record of BSP of boat 0 out of the section.
void bareCopy(const SharedArea& area, ChannelValue& record) noexcept;

/// Opens, maps, touches (the clock stores) and unmaps the section's file. False when that fails.
[[nodiscard]] bool bareOpen(const std::string& path) noexcept;

} // namespace tallowmere::bench

// The alternating channels 117 to 126: the table that says what each stands for, and the choice.
#pragma once

#include "core/channels/value_store.hpp"

namespace tallowmere {

/// Empties the section's alternate table and fills it from "config/alternate.csv". Lines that are no
/// row of the table are skipped; a missing file leaves it empty. Does nothing without a section. Run by
/// the section's creator only.
void readAlternateTable(const Context& context);

namespace detail {
[[nodiscard]] ChannelIndex chooseAlternative(const SharedArea* area, ChannelIndex alternating,
                                             bool mayRecurse) noexcept;
} // namespace detail

/// The channel that `channel` stands for in the own boat's present situation: the channel itself unless
/// it is alternating; 32767 when it is 414 or more or its row of the table is empty.
/// area         null without a section: an alternating channel then stands for itself
/// mayRecurse   follow an alternating channel that stands for another alternating one, once
/// Any thread; reads the section only and does not allocate.
[[nodiscard]] inline ChannelIndex resolveAlternating(const SharedArea* area, ChannelIndex channel,
                                                     bool mayRecurse = true) noexcept {
    // Here, so that a read of any other channel pays a comparison only.
    if (isAlternating(channel)) return detail::chooseAlternative(area, channel, mayRecurse);
    return channel < kChannelCount ? channel : kNone16;
}
[[nodiscard]] inline ChannelIndex resolveAlternating(const ValueStore& values, ChannelIndex channel,
                                                     bool mayRecurse = true) noexcept {
    return resolveAlternating(values.area(), channel, mayRecurse);
}

} // namespace tallowmere

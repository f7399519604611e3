// The sign that what stands in the section is played from a recording, not live.
//
// The section has no field for it, so it stands where every program shows it: at the beginning of the own boat's
// name. A player sets it and takes it away; one that was killed leaves it, with its values, to whoever comes next.
#pragma once

#include "core/channels/section_access.hpp"

#include <string>
#include <string_view>

namespace tallowmere {

class ValueStore;

inline constexpr std::u16string_view kReplaySign = u"[REPLAY]";

/// True when the own boat's name begins with the sign. False without a section.
[[nodiscard]] inline bool isReplay(const SharedArea* area) noexcept {
    if (area == nullptr) return false;
    for (std::size_t i = 0; i < kReplaySign.size(); ++i)
        if (readOnce(area->boats[0].name[i]) != kReplaySign[i]) return false;
    return true;
}

/// The own boat's name without the sign.
[[nodiscard]] std::u16string ownBoatName(const SharedArea& area);

/// For a host that is about to write live values: where there is a sign, takes out every value of every boat in use,
/// because nobody can tell those that were played, and then the sign. A player that still runs sets it again.
/// True when there was a sign.
bool endReplay(ValueStore& values);

} // namespace tallowmere

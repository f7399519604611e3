// The sign that what stands in the section is played from a recording.
//
// The section has no field for it, so it stands where people look in any program: before the own boat's name.
// A player that was killed leaves it there, and the next one takes it away when it ends.
#pragma once

#include "core/channels/shared_area.hpp"

#include <string>

namespace tallowmere::tools {

/// True when the own boat's name says so. False without a section.
[[nodiscard]] bool isReplay(const SharedArea* area);

/// The own boat's name without the sign.
[[nodiscard]] std::u16string ownBoatName(const SharedArea& area);

/// Sets the sign for as long as this object lives. What another program makes of the name meanwhile stays, but for
/// the sign.
class ReplayMark {
  public:
    /// The area must outlive the mark.
    explicit ReplayMark(SharedArea& area);
    ~ReplayMark();
    ReplayMark(const ReplayMark&) = delete;
    ReplayMark& operator=(const ReplayMark&) = delete;

    /// Sets the sign again when somebody has given the boat another name.
    void keep();

  private:
    SharedArea& area_;
    std::u16string name_; // before
    std::u16string marked_;
};

} // namespace tallowmere::tools

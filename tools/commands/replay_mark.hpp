// A player's hold on the replay sign.
#pragma once

#include "core/channels/replay_sign.hpp"

#include <string>

namespace tallowmere::tools {

/// Sets the sign for as long as this object lives. What another program makes of the name meanwhile stays, but for
/// the sign.
class ReplayMark {
  public:
    /// The area must outlive the mark.
    explicit ReplayMark(SharedArea& area);
    ~ReplayMark();
    ReplayMark(const ReplayMark&) = delete;
    ReplayMark& operator=(const ReplayMark&) = delete;

    /// Sets the sign again when somebody has given the boat another name, or has taken it away.
    void keep();

  private:
    SharedArea& area_;
    std::u16string name_; // before
    std::u16string marked_;
};

} // namespace tallowmere::tools

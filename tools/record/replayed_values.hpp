// Recorded values back into the section, as they were.
//
// The value store corrects, checks and derives what is written to it. All of that has been done when a value was
// recorded, so here records go into their slots as they are; a derived channel gets what was recorded of it.
#pragma once

#include "core/channels/value_store.hpp"
#include "tools/record/recording.hpp"

#include <vector>

namespace tallowmere::recording {

class ReplayedValues {
  public:
    /// The store must outlive this object and have a section.
    explicit ReplayedValues(ValueStore& values);

    /// Puts a value with this stamp (100 ns since 1601-01-01 UTC) into its slot and the time into the clock channel.
    /// False when the boat does not keep the channel.
    bool put(const Value& value, std::int64_t stamp) noexcept;
    /// Takes out again what was put and still stands there with its stamp, so that nobody takes it for live.
    void clear() noexcept;

  private:
    ValueStore& values_;
    std::vector<std::int64_t> stamps_; // of what was put, by boat and channel; 0: nothing
};

} // namespace tallowmere::recording

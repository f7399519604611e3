// What is wrong with a recording: the first few rows are told one by one, all are counted.
#pragma once

#include "core/channels/printable.hpp"
#include "tools/record/recording.hpp"

#include <cstdint>
#include <ostream>
#include <string>

namespace tallowmere::recording {

class DamageNotes {
  public:
    static constexpr std::uint64_t kTold = 5;

    /// command   "play"
    DamageNotes(std::ostream& err, std::string command) : err_(err), command_(std::move(command)) {}

    void add(const std::string& file, const Damage& damage) {
        if (++count_ > kTold) return;
        err_ << "tallowmere " << command_ << ": " << printable(file) << ": " << damage.where << ": " << damage.why
             << "; left out\n";
        if (count_ == kTold) err_ << "tallowmere " << command_ << ": further such rows are only counted\n";
    }
    [[nodiscard]] std::uint64_t count() const noexcept { return count_; }

  private:
    std::ostream& err_;
    std::string command_;
    std::uint64_t count_ = 0;
};

} // namespace tallowmere::recording

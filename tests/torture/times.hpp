// How long calls took, and what of the time was theirs.
#pragma once

#include "tests/torture/system.hpp"

#include <cstdint>
#include <iosfwd>
#include <vector>

namespace tallowmere::torture {

inline constexpr std::int64_t kMillisecond = 1'000'000; // ns

template <class Call> Moment timeOf(Call call) {
    const Moment start = Moment::now();
    call();
    return Moment::now() - start;
}

/// As words between processes, each with a space behind it.
std::ostream& operator<<(std::ostream& words, const Moment& took);
std::istream& operator>>(std::istream& words, Moment& took);

/// How long one kind of call took, over all processes.
class Times {
  public:
    void add(const Moment& took);
    /// One line: median, 99 %, the longest, and what those of more than a millisecond did.
    void print(const char* what);

  private:
    std::vector<std::int64_t> all_;
    std::int64_t computing_ = 0;
    unsigned over_ = 0;
    unsigned computed_ = 0;
    unsigned waited_ = 0;
    unsigned preempted_ = 0;
};

} // namespace tallowmere::torture

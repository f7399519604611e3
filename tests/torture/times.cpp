#include "tests/torture/times.hpp"

#include <algorithm>
#include <cstdio>
#include <istream>
#include <ostream>

namespace tallowmere::torture {
namespace {

double microseconds(std::int64_t nanoseconds) {
    return static_cast<double>(nanoseconds) / 1e3;
}

} // namespace

std::ostream& operator<<(std::ostream& words, const Moment& took) {
    return words << took.wall << ' ' << took.computing << ' ' << took.waits << ' ' << took.preempted << ' ';
}

std::istream& operator>>(std::istream& words, Moment& took) {
    return words >> took.wall >> took.computing >> took.waits >> took.preempted;
}

void Times::add(const Moment& took) {
    all_.push_back(took.wall);
    computing_ = std::max(computing_, took.computing);
    if (took.wall <= kMillisecond) return;
    ++over_;
    if (took.computing > kMillisecond)
        ++computed_;
    else if (took.waits > 0)
        ++waited_;
    else
        ++preempted_;
}

void Times::print(const char* what) {
    if (all_.empty()) return;
    std::ranges::sort(all_);
    const auto at = [&](double share) {
        const double index = share * static_cast<double>(all_.size() - 1);
        return microseconds(all_[static_cast<std::size_t>(index)]);
    };
    std::printf("%s: median %.1f us, 99 %% %.1f us, longest %.1f us; over 1 ms: %u of %zu", what, at(0.5), at(0.99),
                at(1.0), over_, all_.size());
    if (Moment::tellsComputing())
        std::printf(" (%u computed longer, %u waited, %u were preempted); longest computing %.1f us", computed_,
                    waited_, preempted_, microseconds(computing_));
    std::printf("\n");
}

} // namespace tallowmere::torture

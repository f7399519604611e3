#include "tools/feed/timeline.hpp"

namespace tallowmere::feed {

void Timeline::add(const nmea::Line& line, std::optional<double> timeOfDay) {
    if (timeOfDay) meet(*timeOfDay);
    waitingBytes_ += line.text.size() + 2; // and its line end
    waiting_.push_back({std::string(line.text), line.tooLong, line.number});
    if (waiting_.size() >= kMostWaiting) releaseAtPace();
}

void Timeline::finish() {
    releaseAtPace();
}

std::optional<TimedLine> Timeline::next() {
    if (ready_.empty()) return std::nullopt;
    TimedLine line = std::move(ready_.front());
    ready_.pop_front();
    return line;
}

void Timeline::meet(double timeOfDay) {
    constexpr double kDay = 86'400.0;
    if (!mark_) {
        releaseAtPace();
        mark_ = timeOfDay;
        return;
    }
    double step = timeOfDay - *mark_;
    if (step < -kDay / 2.0) step += kDay; // past midnight
    if (step > kDay / 2.0) step -= kDay;  // a late sender just before it
    // A little back: another device whose clock is behind. It tells nothing about the passing of time.
    if (step <= 0.0 && step >= -kLongestStep) return;
    const bool passed = step > 0.0 && step <= kLongestStep;
    if (passed && waitingBytes_ > 0) pace_ = step / static_cast<double>(waitingBytes_);
    release(passed ? step : 0.0);
    mark_ = timeOfDay;
}

void Timeline::releaseAtPace() {
    release(pace_ * static_cast<double>(waitingBytes_));
}

void Timeline::release(double seconds) {
    const double share = waiting_.empty() ? 0.0 : seconds / static_cast<double>(waiting_.size());
    for (std::size_t index = 0; index < waiting_.size(); ++index) {
        waiting_[index].due = clock_ + share * static_cast<double>(index);
        ready_.push_back(std::move(waiting_[index]));
    }
    if (!waiting_.empty()) clock_ += seconds;
    waiting_.clear();
    waitingBytes_ = 0;
}

} // namespace tallowmere::feed

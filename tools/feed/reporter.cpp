#include "tools/feed/reporter.hpp"

#include "tools/commands/screen_text.hpp"

namespace tallowmere::feed {
namespace {

void put(std::FILE* stream, std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stream);
}

} // namespace

Reporter::Reporter(std::FILE* stream, bool inPlace, bool quiet) noexcept
    : stream_(stream), inPlace_(inPlace), quiet_(quiet), last_(Clock::now()) {}

void Reporter::line(std::string_view text) {
    endProgress();
    put(stream_, text);
    put(stream_, "\n");
    std::fflush(stream_);
}

bool Reporter::progressDue(Clock::time_point now) noexcept {
    const auto period = inPlace_ ? std::chrono::seconds(1) : std::chrono::seconds(10);
    if (quiet_ || now - last_ < period) return false;
    last_ = now;
    return true;
}

void Reporter::progress(std::string_view text) {
    if (quiet_) return;
    if (!inPlace_) {
        line(text);
        return;
    }
    put(stream_, tools::kEraseLine);
    put(stream_, text);
    std::fflush(stream_);
    shown_ = true;
}

void Reporter::endProgress() {
    if (!shown_) return;
    put(stream_, tools::kEraseLine);
    std::fflush(stream_);
    shown_ = false;
}

} // namespace tallowmere::feed

// What the feed tells its user, on standard error: lines that stay and one line of progress.
#pragma once

#include <chrono>
#include <cstdio>
#include <string_view>

namespace tallowmere::feed {

class Reporter {
  public:
    using Clock = std::chrono::steady_clock;

    /// inPlace   a terminal: progress is redrawn every second; else it is a line of its own every ten
    /// quiet     no progress at all
    Reporter(std::FILE* stream, bool inPlace, bool quiet) noexcept;

    /// A line that stays.
    void line(std::string_view text);

    /// True when it is time for the next progress. The first one is due after one period.
    [[nodiscard]] bool progressDue(Clock::time_point now) noexcept;
    void progress(std::string_view text);
    /// Takes the progress line off a terminal.
    void endProgress();

  private:
    std::FILE* stream_;
    bool inPlace_;
    bool quiet_;
    bool shown_ = false;
    Clock::time_point last_;
};

} // namespace tallowmere::feed

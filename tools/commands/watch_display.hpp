// The two looks of `watch`.
#pragma once

#include "tools/commands/reading_table.hpp"

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace tallowmere::tools {

struct WatchRound {
    std::string title; // whose values
    std::int64_t now;  // 100 ns since 1601-01-01 UTC
    std::vector<Reading> readings;
    bool replay = false; // played from a recording, not live
    bool values = false; // at first only channels that hold a value are of interest
    bool section = true; // there is shared data
};

class WatchDisplay {
  public:
    virtual ~WatchDisplay() = default;
    WatchDisplay(const WatchDisplay&) = delete;
    WatchDisplay& operator=(const WatchDisplay&) = delete;
    virtual void show(const WatchRound& round) = 0;

  protected:
    WatchDisplay() = default;
};

/// A table that is drawn over itself, on the terminal's second screen. Lines that the window has no room for
/// stay unseen. In the end the first screen comes back, and the last table is left there whole.
class LiveTable final : public WatchDisplay {
  public:
    LiveTable(std::ostream& out, std::function<int()> columns);
    ~LiveTable() override;
    void show(const WatchRound& round) override;

  private:
    [[nodiscard]] std::vector<std::string> styledLines(const WatchRound& round, std::size_t columns) const;

    std::ostream& out_;
    std::function<int()> columns_;
    std::vector<std::string> lastLines_;
};

/// Lines for other programs: what has changed since the round before. Nothing before there is shared data.
class ChangeLines final : public WatchDisplay {
  public:
    explicit ChangeLines(std::ostream& out) : out_(out) {}
    void show(const WatchRound& round) override;

  private:
    std::ostream& out_;
    std::vector<std::string> shown_; // by position in the round
};

/// Lines of JSON for other programs: a value that is there or has changed, in itself, its state or its source. Nothing
/// before there is shared data.
class JsonLines final : public WatchDisplay {
  public:
    JsonLines(std::ostream& out, BoatIndex boat) : out_(out), boat_(boat) {}
    void show(const WatchRound& round) override;

  private:
    std::ostream& out_;
    BoatIndex boat_;
    std::vector<Reading> shown_; // by position in the round
};

/// "Own boat (Falcon)", "Boat 3 (Otter)".
[[nodiscard]] std::string boatTitle(const SharedArea* area, BoatIndex boat);

} // namespace tallowmere::tools

// All channels of a boat on one screen: what is shown, and what the keys do. Draws into text; see ScreenText.
#pragma once

#include "tools/commands/reading.hpp"
#include "tools/commands/screen_text.hpp"
#include "tools/commands/write_monitor.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace tallowmere::tools {

struct AllRow {
    Reading reading;
    WriteRate rate;
};

struct AllRound {
    std::string title;       // whose values
    std::int64_t now = 0;    // 100 ns since 1601-01-01 UTC
    std::uint32_t boats = 0; // in use
    bool section = false;    // there is one
    std::vector<AllRow> rows;
};

class AllView {
  public:
    explicit AllView(BoatIndex boat) : boat_(boat) {}

    /// False when the user wants to end.
    [[nodiscard]] bool handle(const platform::Key& key);
    [[nodiscard]] BoatIndex boat() const noexcept { return boat_; }
    void draw(ScreenText& screen, const AllRound& round);

  private:
    enum class Sort : std::uint8_t { Number, Name, Age };

    [[nodiscard]] bool handleCharacter(const std::string& text);
    void handleSearch(const platform::Key& key);
    void scroll(const platform::Key& key);
    void switchBoat(int step);
    [[nodiscard]] std::vector<const AllRow*> chosen(const AllRound& round) const;
    [[nodiscard]] bool isWanted(const AllRow& row) const;
    [[nodiscard]] std::string headLine(const AllRound& round, std::size_t shown) const;
    [[nodiscard]] std::string footLine() const;

    BoatIndex boat_;
    std::uint32_t boats_ = 0;
    Sort sort_ = Sort::Number;
    bool empty_ = false;     // show channels without a value too
    bool searching_ = false; // keys are text
    std::string search_;
    std::size_t top_ = 0;   // the first row shown
    std::size_t page_ = 1;  // rows on the screen
    std::size_t shown_ = 0; // rows there are
};

} // namespace tallowmere::tools

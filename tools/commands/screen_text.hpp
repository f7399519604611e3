// A terminal's screen as text, drawn whole. Knows nothing of terminals: what it makes is a string.
#pragma once

#include "platform/keyboard.hpp"

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace tallowmere::tools {

/// Empties a terminal's line where the cursor stands, to be written anew.
inline constexpr std::string_view kEraseLine = "\r\x1b[K";

enum class Style : std::uint8_t { Plain, Bold, Dim, Reverse };

class ScreenText {
  public:
    /// Sizes that make no sense are brought to 10 to 1000 columns and 4 to 1000 rows.
    explicit ScreenText(platform::ScreenSize size);

    [[nodiscard]] std::size_t columns() const noexcept { return columns_; } // that can be written
    [[nodiscard]] std::size_t rows() const noexcept { return rows_.size(); }
    /// Puts a line, shortened to the width with a sign that it is; below the last row nothing. text: printable UTF-8.
    void put(std::size_t row, Style style, std::string_view text);

    /// The lines without their styles.
    [[nodiscard]] std::vector<std::string> lines() const;
    /// ANSI sequences that draw all of it over what stands there. Each line is put at its own row: nothing scrolls.
    [[nodiscard]] std::string frame() const;

  private:
    struct Row {
        Style style = Style::Plain;
        std::string text;
    };
    std::size_t columns_;
    std::vector<Row> rows_;
};

/// The terminal's second screen, without a cursor, for as long as this object lives.
class SecondScreen {
  public:
    explicit SecondScreen(std::ostream& out);
    ~SecondScreen();
    SecondScreen(const SecondScreen&) = delete;
    SecondScreen& operator=(const SecondScreen&) = delete;

  private:
    std::ostream& out_;
};

} // namespace tallowmere::tools

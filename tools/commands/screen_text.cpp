#include "tools/commands/screen_text.hpp"

#include "core/channels/attempt.hpp"
#include "tools/commands/text.hpp"

#include <algorithm>

namespace tallowmere::tools {
namespace {

constexpr int kMost = 1000;

const char* beginOf(Style style) noexcept {
    switch (style) {
    case Style::Bold:
        return "\x1b[1m";
    case Style::Dim:
        return "\x1b[2m";
    case Style::Reverse:
        return "\x1b[7m";
    case Style::Plain:
        break;
    }
    return "";
}

} // namespace

// The last column stays free: behind it some terminals clear the character just written.
ScreenText::ScreenText(platform::ScreenSize size)
    : columns_(static_cast<std::size_t>(std::clamp(size.columns, 10, kMost) - 1)),
      rows_(static_cast<std::size_t>(std::clamp(size.rows, 4, kMost))) {}

void ScreenText::put(std::size_t row, Style style, std::string_view text) {
    if (row < rows_.size()) rows_[row] = {style, shortenedTo(columns_, text)};
}

std::vector<std::string> ScreenText::lines() const {
    std::vector<std::string> lines;
    for (const Row& row : rows_) lines.push_back(row.text);
    return lines;
}

std::string ScreenText::frame() const {
    std::string frame;
    for (std::size_t row = 0; row < rows_.size(); ++row)
        frame +=
            "\x1b[" + std::to_string(row + 1) + ";1H" + beginOf(rows_[row].style) + rows_[row].text + "\x1b[0m\x1b[K";
    return frame;
}

SecondScreen::SecondScreen(std::ostream& out) : out_(out) {
    out_ << "\x1b[?1049h\x1b[?25l\x1b[2J" << std::flush;
}

SecondScreen::~SecondScreen() {
    attempt([&] { out_ << "\x1b[?25h\x1b[?1049l" << std::flush; });
}

} // namespace tallowmere::tools

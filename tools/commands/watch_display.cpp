#include "tools/commands/watch_display.hpp"

#include "core/channels/replay_sign.hpp"
#include "tools/commands/format.hpp"
#include "tools/commands/json_output.hpp"
#include "tools/commands/text.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <utility>

namespace tallowmere::tools {
namespace {

constexpr char kBegin[] = "\x1b[?1049h\x1b[?25l\x1b[2J"; // second screen, no cursor, empty
constexpr char kEnd[] = "\x1b[?25h\x1b[?1049l";
constexpr char kBold[] = "\x1b[1m";
constexpr char kDim[] = "\x1b[2m";
constexpr char kPlain[] = "\x1b[0m";
constexpr char kClearToLineEnd[] = "\x1b[K";
constexpr char kClearBelow[] = "\x1b[J";
constexpr int kFewestColumns = 10;

std::string secondsText(const std::optional<double>& seconds) {
    if (!seconds) return kNoValueText;
    std::array<char, 40> text;
    std::snprintf(text.data(), text.size(), "%.1f", *seconds);
    return text.data();
}

bool tellsTheSame(const Reading& a, const Reading& b) noexcept {
    return std::bit_cast<std::uint64_t>(a.number) == std::bit_cast<std::uint64_t>(b.number) && a.moment == b.moment &&
           a.freshness == b.freshness && a.source == b.source;
}

} // namespace

LiveTable::LiveTable(std::ostream& out, std::function<int()> columns) : out_(out), columns_(std::move(columns)) {
    out_ << kBegin;
}

LiveTable::~LiveTable() {
    out_ << kEnd;
    for (const std::string& line : lastLines_) out_ << line << '\n';
    out_.flush();
}

/// Each line is put at its own row: nothing scrolls, however small the window is or becomes.
void LiveTable::show(const WatchRound& round) {
    // The last column stays free: behind it some terminals clear the character just written.
    lastLines_ = styledLines(round, static_cast<std::size_t>(std::max(columns_(), kFewestColumns) - 1));
    std::string frame;
    for (std::size_t row = 0; row < lastLines_.size(); ++row)
        frame += "\x1b[" + std::to_string(row + 1) + ";1H" + lastLines_[row] + kClearToLineEnd;
    out_ << frame << kClearBelow;
}

std::vector<std::string> LiveTable::styledLines(const WatchRound& round, std::size_t columns) const {
    std::vector<std::string> styled;
    const auto add = [&](const char* style, const std::string& text) {
        styled.push_back(style + shortenedTo(columns, text) + kPlain);
    };
    add(kBold, round.title + "  " + formatMoment(round.now) + (round.section ? "" : "  no shared data; waiting"));
    const std::vector<std::string> lines = readingTable(round.readings, true).lines();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const bool aged = i > 0 && !isLive(round.readings[i - 1].freshness);
        add(i == 0 ? kBold : aged ? kDim : "", lines[i]);
    }
    return styled;
}

void ChangeLines::show(const WatchRound& round) {
    const bool first = shown_.empty();
    if (first && !round.section) return;
    shown_.resize(round.readings.size());
    for (std::size_t i = 0; i < round.readings.size(); ++i) {
        const Reading& reading = round.readings[i];
        const bool stale = reading.freshness == Freshness::Stale;
        const char* const mark = round.replay ? (stale ? "replay stale" : "replay") : (stale ? "stale" : "");
        std::string text = reading.name + '\t' + reading.value + '\t' + reading.unit;
        std::string key = text + '\t' + mark;
        if (!first && key == shown_[i]) continue;
        shown_[i] = std::move(key);
        if (first && round.values && reading.freshness == Freshness::None) continue;
        out_ << formatMomentTenths(round.now) << '\t' << text << '\t' << secondsText(reading.age) << '\t' << mark
             << '\n';
    }
}

void JsonLines::show(const WatchRound& round) {
    const bool first = shown_.empty();
    if (first && !round.section) return;
    for (std::size_t i = 0; i < round.readings.size(); ++i) {
        if (!first && tellsTheSame(round.readings[i], shown_[i])) continue;
        if (first && round.values && round.readings[i].freshness == Freshness::None) continue;
        Json line = {{"read_at", jsonMoment(round.now)}, {"replay", round.replay}};
        line.update(jsonOf(round.readings[i], boat_));
        writeJsonLine(out_, line);
    }
    shown_ = round.readings;
}

std::string boatTitle(const SharedArea* area, BoatIndex boat) {
    const std::string number = boat == 0 ? "Own boat" : "Boat " + std::to_string(boat);
    if (area == nullptr || boat >= kBoatCount) return number;
    const std::string name = printable(boat == 0 ? ownBoatName(*area) : readText(area->boats[boat].name));
    const std::string title = name.empty() || name == number ? number : number + " (" + name + ")";
    return isReplay(area) ? "REPLAY: " + title : title;
}

} // namespace tallowmere::tools

#include "tools/commands/all_view.hpp"

#include "tools/commands/format.hpp"
#include "tools/commands/table.hpp"
#include "tools/commands/text.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>

namespace tallowmere::tools {
namespace {

using platform::Key;

constexpr std::size_t kHeadRows = 2; // title, names of the columns
constexpr std::size_t kFootRows = 1;
constexpr std::size_t kLongestSearch = 32;

std::string rateText(const WriteRate& rate) {
    if (!rate.known) return kNoValueText;
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%.1f%s", rate.perSecond, rate.atLeast ? "+" : "");
    return text.data();
}

enum class Column : std::uint8_t { Number, Name, Value, Unit, Age, State, Source, Rate, Mark };

struct ColumnDef {
    Column column;
    Table::Align align;
    const char* title;
    std::uint8_t leaves; // 1 to 6: the order in which columns give way on a narrow screen; 0: never
};

constexpr ColumnDef kColumns[] = {
    {Column::Number, Table::Align::Right, "No.", 4},   {Column::Name, Table::Align::Left, "Channel", 0},
    {Column::Value, Table::Align::Right, "Value", 0},  {Column::Unit, Table::Align::Left, "Unit", 3},
    {Column::Age, Table::Align::Right, "Age", 5},      {Column::State, Table::Align::Left, "State", 2},
    {Column::Source, Table::Align::Left, "Source", 1}, {Column::Rate, Table::Align::Right, "Writes/s", 6},
    {Column::Mark, Table::Align::Left, "", 0},
};

/// A way to show the table: without the first columns to give way, and with what is wider than this brought down to it.
struct Layout {
    unsigned left;
    std::size_t name;  // columns of the screen
    std::size_t value; // likewise
};

constexpr std::size_t kAny = std::numeric_limits<std::size_t>::max();
/// The first that fits is taken. 12 columns hold all values but moments, 8 all but positions and large numbers.
constexpr Layout kLayouts[] = {
    {0, kAny, kAny}, {1, kAny, kAny}, {2, kAny, kAny}, {3, kAny, kAny}, {4, kAny, kAny}, {5, kAny, kAny},
    {5, kAny, 12},   {5, 12, 12},     {5, 8, 12},      {5, 8, 8},       {6, kAny, 12},   {6, 8, 8},
};
constexpr char kTooNarrow[] = "Window too narrow";

/// A value is whole or not shown: part of a number looks like another one.
std::string valueWithin(std::size_t columns, const std::string& value) {
    return width(value) > columns ? kCutText : value;
}

std::string cellOf(Column column, const AllRow& row, const Layout& layout) {
    const Reading& reading = row.reading;
    switch (column) {
    case Column::Number:
        return std::to_string(reading.channel);
    case Column::Name:
        return shortenedTo(layout.name, reading.channelName);
    case Column::Value:
        return valueWithin(layout.value, reading.value);
    case Column::Unit:
        return reading.unit;
    case Column::Age:
        return formatAge(reading.age);
    case Column::State:
        return reading.freshness == Freshness::None ? kNoValueText : stateName(reading.freshness);
    case Column::Source:
        return reading.source == reading.channel ? "" : reading.sourceName;
    case Column::Rate:
        return rateText(row.rate);
    case Column::Mark:
        break;
    }
    return row.rate.twoLevels ? "2 levels" : "";
}

/// The titles and the rows.
std::vector<std::string> linesIn(const Layout& layout, const std::vector<const AllRow*>& rows) {
    std::vector<ColumnDef> columns;
    for (const ColumnDef& each : kColumns)
        if (each.leaves == 0 || each.leaves > layout.left) columns.push_back(each);
    std::vector<Table::Align> aligns;
    std::vector<std::string> cells;
    for (const ColumnDef& each : columns) {
        aligns.push_back(each.align);
        cells.emplace_back(each.title);
    }
    Table table(std::move(aligns));
    table.add(cells);
    for (const AllRow* row : rows) {
        for (std::size_t i = 0; i < columns.size(); ++i) cells[i] = cellOf(columns[i].column, *row, layout);
        table.add(cells);
    }
    return table.lines();
}

/// The titles and the rows, as much of them as fits: no cell is cut at the edge. Empty when the screen is too narrow
/// for any sense.
std::vector<std::string> tableLines(const std::vector<const AllRow*>& rows, std::size_t columns) {
    const auto fits = [columns](const std::string& line) { return width(line) <= columns; };
    for (const Layout& layout : kLayouts) {
        std::vector<std::string> lines = linesIn(layout, rows);
        if (std::ranges::all_of(lines, fits)) return lines;
    }
    return {};
}

/// Those without an age come last.
bool isYounger(const AllRow* a, const AllRow* b) noexcept {
    const auto& left = a->reading.age;
    const auto& right = b->reading.age;
    if (!left || !right) return left.has_value() && !right.has_value();
    return *left < *right;
}

void dropLastCharacter(std::string& text) {
    while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0) == 0x80) text.pop_back();
    if (!text.empty()) text.pop_back();
}

} // namespace

bool AllView::handle(const Key& key) {
    if (key.kind == Key::Kind::Closed) return false;
    if (searching_)
        handleSearch(key);
    else if (key.kind == Key::Kind::Character)
        return handleCharacter(key.text);
    else if (key.kind == Key::Kind::Escape)
        search_.clear();
    scroll(key);
    return true;
}

bool AllView::handleCharacter(const std::string& text) {
    if (text == "q") return false;
    if (text == "n") sort_ = Sort::Name;
    if (text == "a") sort_ = Sort::Age;
    if (text == "c") sort_ = Sort::Number;
    if (text == "v") empty_ = !empty_;
    if (text == "b") switchBoat(1);
    if (text == "B") switchBoat(-1);
    if (text == "/") {
        searching_ = true;
        search_.clear();
    }
    return true;
}

void AllView::handleSearch(const Key& key) {
    if (key.kind == Key::Kind::Enter) searching_ = false;
    if (key.kind == Key::Kind::Backspace) dropLastCharacter(search_);
    if (key.kind == Key::Kind::Escape) {
        searching_ = false;
        search_.clear();
    }
    if (key.kind == Key::Kind::Character && search_.size() < kLongestSearch) search_ += printable(key.text);
}

void AllView::scroll(const Key& key) {
    const std::size_t last = shown_ > page_ ? shown_ - page_ : 0;
    switch (key.kind) {
    case Key::Kind::Up:
        top_ -= std::min<std::size_t>(top_, 1);
        break;
    case Key::Kind::Down:
        top_ += 1;
        break;
    case Key::Kind::PageUp:
        top_ -= std::min(top_, page_);
        break;
    case Key::Kind::PageDown:
        top_ += page_;
        break;
    case Key::Kind::Home:
        top_ = 0;
        break;
    case Key::Kind::End:
        top_ = last;
        break;
    default:
        break;
    }
    top_ = std::min(top_, last);
}

void AllView::switchBoat(int step) {
    const int boats = static_cast<int>(std::max<std::uint32_t>(boats_, 1));
    boat_ = static_cast<BoatIndex>((std::min<int>(boat_, boats) + step + boats) % boats);
    top_ = 0;
}

bool AllView::isWanted(const AllRow& row) const {
    const Reading& reading = row.reading;
    if (!empty_ && reading.freshness == Freshness::None) return false;
    const std::string wanted = lowerCased(search_);
    return lowerCased(reading.name).find(wanted) != std::string::npos ||
           std::to_string(reading.channel).starts_with(wanted);
}

std::vector<const AllRow*> AllView::chosen(const AllRound& round) const {
    std::vector<const AllRow*> rows;
    for (const AllRow& row : round.rows)
        if (isWanted(row)) rows.push_back(&row);
    // Rows that are equal stay in the order of their numbers, so that nothing jumps about.
    if (sort_ == Sort::Age) std::ranges::stable_sort(rows, isYounger);
    if (sort_ == Sort::Name)
        std::ranges::stable_sort(rows, {}, [](const AllRow* row) { return lowerCased(row->reading.channelName); });
    return rows;
}

std::string AllView::headLine(const AllRound& round, std::size_t shown) const {
    const char* const by = sort_ == Sort::Name ? "name" : sort_ == Sort::Age ? "age" : "number";
    return round.title + "  " + formatMoment(round.now) + "  " + std::to_string(shown) +
           (empty_ ? " channels, by " : " with a value, by ") + by + (search_.empty() ? "" : ", \"" + search_ + "\"");
}

std::string AllView::footLine() const {
    if (searching_) return "/" + search_ + "_  Enter keep  Esc drop";
    return "q quit  / search  n name  a age  c number  v all/with value  b B boat  arrows PgUp PgDn";
}

void AllView::draw(ScreenText& screen, const AllRound& round) {
    boats_ = round.boats;
    const std::vector<const AllRow*> rows = chosen(round);
    shown_ = rows.size();
    page_ = screen.rows() - kHeadRows - kFootRows;
    top_ = std::min(top_, shown_ > page_ ? shown_ - page_ : 0);

    screen.put(0, Style::Bold, headLine(round, shown_));
    screen.put(screen.rows() - 1, Style::Reverse, footLine());
    if (!round.section)
        return screen.put(kHeadRows, Style::Dim, "There is no shared data; waiting for a program that makes it.");
    const std::vector<std::string> lines = tableLines(rows, screen.columns());
    if (lines.empty()) return screen.put(1, Style::Bold, kTooNarrow);
    screen.put(1, Style::Bold, lines.front());
    for (std::size_t i = 0; i < page_ && top_ + i < shown_; ++i) {
        const AllRow& row = *rows[top_ + i];
        const Style style = row.rate.twoLevels              ? Style::Bold
                            : isLive(row.reading.freshness) ? Style::Plain
                                                            : Style::Dim;
        screen.put(kHeadRows + i, style, lines[top_ + i + 1]);
    }
}

} // namespace tallowmere::tools

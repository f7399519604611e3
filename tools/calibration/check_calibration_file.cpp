#include "tools/calibration/check_calibration_file.hpp"

#include "calibration/curve.hpp"
#include "calibration/decimal_number.hpp"
#include "calibration/item_table.hpp"
#include "settings/text_lines.hpp"
#include "tools/calibration/item_text.hpp"
#include "tools/calibration/strict_number.hpp"

#include <algorithm>
#include <limits>
#include <string_view>
#include <vector>

namespace tallowmere::tools {
namespace {

constexpr std::string_view kSeparators = " ,\t";
constexpr char kGap[] = "beside it a straight curve has no value and a smooth one keeps its neighbour's";

std::vector<std::string_view> fieldsOf(std::string_view line) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    std::vector<std::string_view> fields;
    while (true) {
        line.remove_prefix(std::min(line.find_first_not_of(kSeparators), line.size()));
        if (line.empty()) return fields;
        fields.push_back(line.substr(0, line.find_first_of(kSeparators)));
        line.remove_prefix(fields.back().size());
    }
}

/// The numbers of a line, as the library takes them.
std::vector<double> numbersOf(const std::vector<std::string_view>& fields) {
    std::vector<double> numbers;
    for (const std::string_view field : fields) {
        const auto number = leadingDecimal(field);
        if (!number) break;
        numbers.push_back(*number);
    }
    return numbers;
}

std::size_t ascendingCount(const std::vector<double>& numbers) {
    double previous = std::numeric_limits<double>::lowest();
    for (std::size_t k = 0; k < numbers.size(); ++k) {
        if (!(numbers[k] > previous)) return k;
        previous = numbers[k];
    }
    return numbers.size();
}

bool isOdd(std::size_t count) noexcept {
    return count % 2 != 0;
}

class FileChecker {
  public:
    FileChecker(const std::u16string& path, std::optional<std::size_t> item, Findings& findings)
        : path_(path), item_(item), findings_(findings) {}

    void line(std::string_view text) {
        ++line_;
        if (line_ == 1 && hiddenByMark(text)) return;
        if (text.size() >= kLongestLine) report("the line is longer than 65536 bytes", "what lies beyond is ignored");
        const std::vector<std::string_view> fields = fieldsOf(text);
        if (fields.empty()) return;
        const std::vector<double> numbers = numbersOf(fields);
        if (numbers.empty()) return checkHeading(fields);
        checkFields(fields, numbers.size());
        if (!started_)
            first(numbers);
        else
            row(numbers);
    }

    void finish() {
        if (utf16_) return;
        if (!started_) return report0("has no line that begins with a number", empty());
        checkLayout();
        if (rows_.empty())
            report0(columnLayout_ ? "has a header and no row below it" : "has no row with a value", empty());
        if (rowCount_ > kMostRows) report0("has " + std::to_string(rowCount_) + " rows", "the first 256 are read");
        if (item_ && kCalibrationItems[*item_].rowInput == kNone16) checkOnlyRow(kCalibrationItems[*item_]);
    }

  private:
    struct Row {
        double value;
        std::size_t line;
        std::size_t knots;
        bool level; // the same value at every knot
    };
    /// The counts of numbers in the data lines after the first.
    struct Counts {
        std::size_t least = std::numeric_limits<std::size_t>::max();
        std::size_t most = 0;
        bool allOdd = true;

        void add(std::size_t count) noexcept {
            allOdd = allOdd && isOdd(count);
            least = std::min(least, count);
            most = std::max(most, count);
        }
        [[nodiscard]] bool are(std::size_t count) const noexcept { return least == count && most == count; }
        /// A row value and at least one pair, in every line.
        [[nodiscard]] bool suitPairs() const noexcept { return most > 0 && least >= 3 && allOdd; }
    };

    void report(std::string what, std::string effect) { reportAt(line_, std::move(what), std::move(effect)); }
    void report0(std::string what, std::string effect) { reportAt(0, std::move(what), std::move(effect)); }
    void reportAt(std::size_t line, std::string what, std::string effect) {
        findings_.add(path_, line, std::move(what), std::move(effect));
    }
    static std::string empty() { return "the table is empty and gives no correction"; }

    /// A byte order mark makes the first field no number.
    bool hiddenByMark(std::string_view text) {
        if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
            report("the file is UTF-16 text", "its lines are no numbers to the reader");
            utf16_ = true;
            return true;
        }
        if (!text.starts_with(kUtf8Mark)) return false;
        if (const auto fields = fieldsOf(text.substr(kUtf8Mark.size())); fields.empty() || numbersOf(fields).empty())
            return true;
        report("a byte order mark stands before the first number", "the line is passed over");
        return true;
    }

    /// A line that is passed over, where that can hardly be meant.
    void checkHeading(const std::vector<std::string_view>& fields) {
        const std::string_view field = fields.front();
        if (std::string_view("+-.0123456789").find(field.front()) != std::string_view::npos &&
            field.find_first_of("0123456789") != std::string_view::npos)
            return report("its first field " + inQuotes(field) + " is not read as a number", "the line is passed over");
        if (std::string_view("!#%;:/*'\"-=").find(field.front()) != std::string_view::npos || fields.size() < 3) return;
        for (const std::string_view other : std::vector(fields.begin() + 1, fields.end()))
            if (!isDecimalNumber(other)) return;
        report("its first field " + inQuotes(field) + " is no number, though numbers follow",
               "the line is passed over");
    }

    void checkFields(const std::vector<std::string_view>& fields, std::size_t numbers) {
        for (std::size_t k = 0; k < numbers; ++k)
            if (!isDecimalNumber(fields[k]))
                report("field " + std::to_string(k + 1) + " " + inQuotes(fields[k]) + " has text after its number",
                       "it is read as " + numberOf(*leadingDecimal(fields[k])));
        if (numbers < fields.size())
            report("field " + std::to_string(numbers + 1) + " " + inQuotes(fields[numbers]) + " is no number",
                   "the line ends before it");
    }

    static std::string numberOf(double value) { return value == NO_VALUE ? "32767" : numberText(value); }

    void first(const std::vector<double>& numbers) {
        started_ = true;
        firstLine_ = line_;
        firstNumbers_ = numbers;
        columnLayout_ = ascendingCount(numbers) == numbers.size();
        if (!columnLayout_) return row(numbers);
        columns_ = numbers.size();
        if (columns_ > kMostKnots) report("has more than 512 columns", "those beyond have no position");
        for (const double position : numbers)
            if (position == NO_VALUE) report("column position 32767 means no value", "the column can't be relied on");
    }

    void row(const std::vector<double>& numbers) {
        if (columnLayout_)
            checkColumnRow(numbers);
        else
            checkPairRow(numbers);
        if (columnLayout_ || line_ != firstLine_) otherCounts_.add(numbers.size());
        if (line_ != firstLine_ && numbers.size() > 1 && firstNumbers_.size() > 1 && numbers[1] == firstNumbers_[1])
            positionsRepeat_ = true;
        if (numbers.size() < (columnLayout_ ? 2U : 3U) || ++rowCount_ > kMostRows) return;
        checkRowValue(numbers.front());
        rows_.push_back(rowOf(numbers));
    }

    [[nodiscard]] Row rowOf(const std::vector<double>& numbers) const {
        const std::size_t step = columnLayout_ ? 1 : 2; // from value to value
        Row row{numbers.front(), line_, 0, true};
        for (std::size_t k = step; k < numbers.size(); k += step, ++row.knots)
            row.level = row.level && numbers[k] == numbers[step];
        return row;
    }

    void checkColumnRow(const std::vector<double>& numbers) {
        const std::size_t values = numbers.size() - 1;
        const std::string counts = "has " + std::to_string(values) + (values == 1 ? " value for " : " values for ") +
                                   std::to_string(columns_) + (columns_ == 1 ? " column" : " columns");
        if (values == 0) return report("has a row value and nothing else", "the row is dropped");
        if (values < columns_) report(counts, "the row ends after its last value");
        if (values > columns_) report(counts, "the values beyond lie at position 32767");
        for (std::size_t k = 1; k < numbers.size(); ++k)
            if (numbers[k] == NO_VALUE) report("value " + std::to_string(k) + " is 32767, which means none", kGap);
    }

    void checkPairRow(const std::vector<double>& numbers) {
        if (numbers.size() == 1) return report("has a row value and nothing else", "the row is dropped");
        if (!isOdd(numbers.size()))
            report("ends with position " + numberOf(numbers.back()) + " without a value", "the position is dropped");
        const std::size_t knots = (numbers.size() - 1) / 2;
        if (knots > kMostKnots) report("has more than 512 knots", "those beyond are dropped");
        const bool ascending = knots < 2 || numbers[2 * knots - 1] > numbers[1];
        if (knots >= 2 && numbers[2 * knots - 1] < numbers[1])
            report("its positions do not ascend", "descending ones give the same curve");
        for (std::size_t k = 0; k < knots; ++k) {
            const double x = numbers[2 * k + 1];
            if (x == NO_VALUE)
                report("pair " + std::to_string(k + 1) + " has position 32767", "it is a position like any other");
            if (numbers[2 * k + 2] == NO_VALUE)
                report("pair " + std::to_string(k + 1) + " has the value 32767, which means none", kGap);
            if (k == 0) continue;
            const double before = numbers[2 * k - 1];
            if (x == before)
                report("position " + numberOf(x) + " stands there twice", "the curve has a jump or a gap there");
            else if ((x > before) != ascending)
                report("position " + numberOf(x) + " after " + numberOf(before) + " is out of order",
                       "they are not sorted, and the curve there is of no use");
        }
    }

    void checkRowValue(double value) {
        if (value == NO_VALUE)
            report("its row value is 32767, which means none", "sorted last, it sends every reading to the first row");
        for (const Row& other : rows_)
            if (other.value == value)
                return report("row " + numberOf(value) + " was there already on line " + std::to_string(other.line),
                              "both stay, and which counts depends on the rows around them");
        if (!rows_.empty() && value < rows_.back().value)
            report("row " + numberOf(value) + " comes after row " + numberOf(rows_.back().value),
                   "the rows are sorted");
    }

    /// Of an item without a row input. Without a column input too its first value counts. On write a curve along a
    /// signed angle is entered with the size of the row input, so here with that of no value, whatever the angle.
    void checkOnlyRow(const CalibrationItemDef& item) {
        if (rows_.size() > 1) report0("has several rows, and its item no row input", "the first row alone counts");
        if (rows_.empty()) return;
        const Row& row = *std::ranges::min_element(rows_, {}, &Row::value); // the first once they are sorted
        if (row.level) return;
        const std::string values = "has " + std::to_string(row.knots) + " values";
        if (item.columnInput == kNone16)
            return reportAt(row.line, values + ", and its item no input", "the first one counts");
        if (!isSignedAngle(kCatalogue[item.columnInput].unitClass())) return;
        reportAt(row.line, values + " along " + inputName(item.columnInput) + ", an angle, and its item no row input",
                 "every angle is corrected by what the curve has at 32767; give one value for all angles");
    }

    void checkLayout() {
        const std::size_t count = firstNumbers_.size();
        if (columnLayout_ && count >= 3 && isOdd(count) && otherCounts_.suitPairs())
            reportAt(firstLine_, "its numbers ascend, though all lines look like a row value and pairs",
                     "it is taken for the header of columns");
        if (columnLayout_ || count < 2 || (otherCounts_.most != count + 1 && !hasCorner())) return;
        const std::size_t k = ascendingCount(firstNumbers_);
        reportAt(firstLine_,
                 "looks like a header, but " + numberOf(firstNumbers_[k]) + " does not exceed " +
                     numberOf(k == 0 ? firstNumbers_[0] : firstNumbers_[k - 1]),
                 "all lines are read as a row value and pairs of position and value");
    }

    /// True for a first line like "0 0 45 90" above rows of as many numbers: a number stands in the table's corner,
    /// where a word would be passed over. Rows of pairs keep to the first one's positions, as a rule.
    [[nodiscard]] bool hasCorner() const {
        const std::vector<double> behind(firstNumbers_.begin() + 1, firstNumbers_.end());
        return behind.size() >= 2 && otherCounts_.are(firstNumbers_.size()) &&
               ascendingCount(behind) == behind.size() && !positionsRepeat_;
    }

    const std::u16string& path_;
    std::optional<std::size_t> item_;
    Findings& findings_;
    std::size_t line_ = 0;
    bool utf16_ = false;
    bool started_ = false; // the first data line has been seen
    bool columnLayout_ = false;
    std::size_t columns_ = 0;
    std::size_t firstLine_ = 0;
    std::vector<double> firstNumbers_;
    Counts otherCounts_;
    bool positionsRepeat_ = false; // a line's first pair lies where the first line's does
    std::vector<Row> rows_;        // as many as the library reads
    std::size_t rowCount_ = 0;
};

} // namespace

void checkCalibrationFile(const platform::Platform& platform, const std::u16string& path,
                          std::optional<std::size_t> item, Findings& findings) {
    const auto file = platform.openFile(path);
    if (file == nullptr) {
        findings.add(path, 0, "can't be opened for reading", "the table is empty and gives no correction");
        return;
    }
    FileChecker checker(path, item, findings);
    const bool whole = forEachLine(*file, [&](std::string_view text) { checker.line(text); });
    checker.finish();
    if (!whole) findings.add(path, 0, "is longer than 16 MiB", "what lies beyond is ignored");
}

} // namespace tallowmere::tools

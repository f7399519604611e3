#include "calibration/calibration_file.hpp"

#include "calibration/decimal_number.hpp"
#include "settings/text_lines.hpp"

#include <algorithm>
#include <limits>
#include <optional>
#include <string_view>

namespace tallowmere {
namespace {

constexpr std::string_view kSeparators = " ,\t";

/// The numbers of a line from its front, up to the first field that is none.
class FieldScanner {
  public:
    explicit FieldScanner(std::string_view line) noexcept : rest_(line) {}

    std::optional<double> next() noexcept {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(kSeparators), rest_.size()));
        const std::string_view field = rest_.substr(0, rest_.find_first_of(kSeparators));
        rest_.remove_prefix(field.size());
        return leadingDecimal(field);
    }

  private:
    std::string_view rest_;
};

enum class Layout { Unknown, Columns, Pairs };

class TableReader {
  public:
    void readLine(std::string_view line) {
        if (!FieldScanner(line).next()) return;
        if (layout_ == Layout::Unknown) {
            layout_ = readHeader(line) ? Layout::Columns : Layout::Pairs;
            if (layout_ == Layout::Columns) return;
        }
        readRow(line);
    }

    /// Hands over what was read.
    void finishInto(CalibrationTable& table) {
        std::ranges::stable_sort(rows_, {}, &CurveRow::rowValue);
        if (layout_ == Layout::Columns) placeKnots();
        table.rows = std::move(rows_);
        if (layout_ == Layout::Columns) table.columns = std::move(columns_);
        if (layout_ != Layout::Unknown) table.sharedColumns = layout_ == Layout::Columns ? 1 : 0;
        table.changed = 0;
    }

  private:
    /// True, with the columns taken, when the line's numbers ascend. A single one does.
    bool readHeader(std::string_view line) {
        FieldScanner fields(line);
        double previous = std::numeric_limits<double>::lowest();
        while (const std::optional<double> position = fields.next()) {
            if (!(*position > previous)) return false;
            if (columns_.size() < kMostKnots) columns_.push_back({NO_VALUE, *position, NO_VALUE});
            previous = *position;
        }
        return true;
    }

    void readRow(std::string_view line) {
        if (rows_.size() == kMostRows) return;
        FieldScanner fields(line);
        const std::optional<double> rowValue = fields.next();
        if (!rowValue) return;
        CurveRow row;
        row.rowValue = *rowValue;
        while (row.knots.size() < kMostKnots) {
            CurveKnot knot;
            if (layout_ == Layout::Pairs) {
                const std::optional<double> position = fields.next();
                if (!position) break;
                knot.x = *position;
            }
            const std::optional<double> value = fields.next();
            if (!value) break;
            knot.y = *value;
            row.knots.push_back(knot);
            row.dirty = 1;
        }
        if (!row.knots.empty()) rows_.push_back(std::move(row));
    }

    /// Knots beyond the last column keep NO_VALUE as their position.
    void placeKnots() noexcept {
        for (CurveRow& row : rows_)
            for (std::size_t k = 0; k < std::min(row.knots.size(), columns_.size()); ++k)
                row.knots[k].x = columns_[k].y;
    }

    Layout layout_ = Layout::Unknown;
    std::vector<CurveKnot> columns_;
    std::vector<CurveRow> rows_;
};

} // namespace

void readCalibrationFile(const platform::Platform& platform, const std::u16string& path, CalibrationTable& table) {
    table.rows.clear();
    table.columns.clear();
    const std::unique_ptr<platform::FileReader> file = platform.openFile(path);
    if (file == nullptr) return;
    TableReader reader;
    forEachLine(*file, [&](std::string_view line) { reader.readLine(line); });
    reader.finishInto(table);
}

} // namespace tallowmere

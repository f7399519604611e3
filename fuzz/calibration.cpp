// A calibration file, its curves at and about its own numbers, and a write that they correct.
#include "calibration/calibration.hpp"
#include "calibration/calibration_file.hpp"
#include "calibration/decimal_number.hpp"
#include "core/channels/value_store.hpp"
#include "fuzz/support/reader_section.hpp"

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

namespace tallowmere::fuzz {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

void checkTable(const CalibrationTable& table) {
    if (table.rows.size() > kMostRows || table.columns.size() > kMostKnots) fail("table beyond its limits");
    for (std::size_t row = 0; row < table.rows.size(); ++row) {
        if (table.rows[row].knots.empty() || table.rows[row].knots.size() > kMostKnots)
            fail("row beyond its limits", row);
        if (!std::isfinite(table.rows[row].rowValue)) fail("row at no finite number", row);
        if (row > 0 && table.rows[row].rowValue < table.rows[row - 1].rowValue) fail("rows out of order", row);
        for (const CurveKnot& knot : table.rows[row].knots)
            if (!std::isfinite(knot.x) || !std::isfinite(knot.y)) fail("knot of no finite number", row);
    }
}

void evaluate(CalibrationTable& table, double x, double r) {
    for (const bool linear : {false, true}) {
        table.linear = linear ? 1 : 0;
        double y = 0.0;
        const bool found = EvalTable(table, x, r, y);
        if (found != (y != NO_VALUE)) fail("a curve's answer and its value disagree");
    }
}

void evaluateAbout(CalibrationTable& table) {
    constexpr std::size_t kEnough = 3; // rows and knots from each end; what lies between is the same code
    for (std::size_t at = 0; at < std::min(table.rows.size(), kEnough); ++at) {
        const CurveRow& row = table.rows[at];
        const double r = row.rowValue;
        for (std::size_t k = 0; k < std::min(row.knots.size(), kEnough); ++k) {
            const double x = row.knots[k].x;
            const double last = row.knots[row.knots.size() - 1 - k].x;
            evaluate(table, x, r);
            evaluate(table, last + 0.5, r + 0.25);
            evaluate(table, x * 0.5 + last * 0.5, table.rows.back().rowValue * 0.5 + r * 0.5);
        }
    }
    for (const double odd : {0.0, kNaN, 1e308, -1e308, double{NO_VALUE}}) evaluate(table, odd, odd);
}

/// The front of the file as one number, held against the C library's for what both read alike.
void checkNumber(std::string_view text) {
    const std::string front(text.substr(0, std::min<std::size_t>(text.find_first_not_of("+-.0123456789eE"), 400)));
    if (front.empty()) return;
    char* end = nullptr;
    const double expected = std::strtod(front.c_str(), &end);
    const std::optional<double> found = leadingDecimal(front);
    const bool none = end == front.c_str() || std::isinf(expected);
    if (none != !found.has_value()) fail("a number for one is none for the other");
    if (found && std::fabs(expected) >= std::numeric_limits<double>::min() && *found != expected)
        fail("a number read otherwise than by strtod");
}

struct CalibratedSection : ReaderSection {
    CalibratedSection() : ReaderSection({{0, 3 * 40000}}), items(&values), values(context(), &items) {
        for (const std::size_t id : {calibration_item::kAwaOffset, calibration_item::kAwa})
            items.ResetCalibrationItem(id);
        watched.keep();
    }
    Calibration items;
    ValueStore values;
};

void correctWrites(CalibratedSection& section) {
    constexpr std::size_t kSettingsOfAwa = 6380 + 108 * ZAN_AWA;
    constexpr std::size_t kOwnBoat = 59096;
    constexpr std::size_t kFullBlock = 30224;
    for (const std::size_t id : {calibration_item::kAwaOffset, calibration_item::kAwa}) {
        section.items.loadCalibrationFile(id, u"any");
        section.items.item(id).use = 1;
    }
    section.items.UpdateCalibratedFlag(calibration_item::kAwa);
    for (const double angle : {-170.0, -0.5, 33.0, 180.0}) (void)section.values.storeDouble(ZAN_AWA, angle, 0);
    WatchedSection& watched = section.watched;
    watched.allow(kSettingsOfAwa, 3);                                   // calibrate, written
    watched.allow(6196 + 38, 1);                                        // "something written"
    watched.allow(6376, 4);                                             // boat count
    watched.allow(51092 + 4, 1);                                        // the own boat has data
    watched.allow(kOwnBoat + 8 * ZAN_AWA, 8);                           // stamp
    watched.allow(kOwnBoat + 3312 + 16 * ZAN_AWA, 16);                  // value
    for (const std::size_t block : {kOwnBoat, kOwnBoat + kFullBlock}) { // the clock
        watched.allow(block, 8);
        for (const std::size_t values : {3312u, 9936u, 16560u}) watched.allow(block + values, 16);
    }
}

} // namespace

void calibration(Bytes input) {
    static CalibratedSection section;
    checkNumber(textOf(input));
    section.platform.file = textOf(input);
    CalibrationTable table;
    readCalibrationFile(section.platform, u"any", table);
    checkTable(table);
    BuildSplines(table);
    evaluateAbout(table);
    correctWrites(section);
    section.finish("a calibrated write wrote elsewhere");
}

} // namespace tallowmere::fuzz

#include "tools/calibration/show.hpp"

#include "core/channels/channel_lookup.hpp"
#include "tools/calibration/check_calibration_file.hpp"
#include "tools/calibration/item_finder.hpp"
#include "tools/calibration/item_text.hpp"
#include "tools/calibration/user_calibration.hpp"
#include "tools/commands/table.hpp"
#include "tools/commands/text.hpp"

#include <algorithm>

namespace tallowmere::tools {
namespace {

constexpr auto kLeft = Table::Align::Left;
constexpr auto kRight = Table::Align::Right;

std::string sizeText(const CalibrationTable& table) {
    std::size_t most = 0;
    for (const CurveRow& row : table.rows) most = std::max(most, row.knots.size());
    return table.rows.empty() ? "empty" : std::to_string(table.rows.size()) + " x " + std::to_string(most);
}

std::string problemText(const UserCalibration& user, std::size_t id, const CalibrationItem& item) {
    if (!user.platform().exists(item.file)) return "no file";
    Findings findings;
    checkCalibrationFile(user.platform(), item.file, id, findings);
    return findings.empty() ? "-" : std::to_string(findings.count());
}

std::string headLine(std::size_t id, const CalibrationItem& item) {
    return std::to_string(id) + " " + printable(item.name) + (item.use != 0 ? ", in use" : ", not in use") +
           (item.table.linear != 0 ? ", straight" : ", smooth");
}

void addPair(Table& table, const std::string& name, const std::string& text) {
    table.add({name, text});
}

std::string inputText(std::int32_t channel) {
    if (!isInput(channel)) return "none";
    const std::string unit = inputUnit(channel);
    return inputName(channel) + (unit.empty() ? "" : " (" + unit + ")");
}

std::string knotTable(const CalibrationItem& item) {
    std::size_t columns = 0;
    for (const CurveRow& row : item.table.rows) columns = std::max(columns, row.knots.size());
    std::vector<Table::Align> aligns(columns + 2, kRight);
    aligns[1] = kLeft;
    Table table(aligns);
    const auto add = [&](const std::string& first, const std::string& what, const CurveRow& row,
                         double CurveKnot::*member) {
        std::vector<std::string> cells{first, what};
        for (const CurveKnot& knot : row.knots) cells.push_back(numberText(knot.*member));
        table.add(std::move(cells));
    };
    for (std::size_t r = 0; r < item.table.rows.size(); ++r) {
        const CurveRow& row = item.table.rows[r];
        if (r == 0 || item.table.sharedColumns == 0) add("", "at", row, &CurveKnot::x);
        add(numberText(row.rowValue), "", row, &CurveKnot::y);
    }
    return table.text();
}

/// Says on the error stream what is wrong with the name.
std::optional<std::size_t> itemNamed(const CommandContext& context, const std::string& typed) {
    const FoundItem found = findItem(typed);
    if (!found.id) context.err << "tallowmere: " << found.error << '\n';
    return found.id;
}

/// The value that is written, where one of the two inputs is the calibrated channel itself.
std::optional<double> writtenValue(const CalibrationItem& item, const EvalOptions& options) {
    if (!isInput(item.channel)) return std::nullopt;
    if (item.columnInput == item.channel) return options.x;
    if (item.rowInput == item.channel) return options.r;
    return std::nullopt;
}

/// The item's correction of a value as the write path asks for it, whether or not the item is in use.
double correctionOf(UserCalibration& user, std::size_t id, double value) {
    CalibrationItem& item = user.item(id);
    const std::uint8_t use = item.use;
    item.use = 1;
    double correction = NO_VALUE;
    (void)user.calibration().CalibrationCorrection(id, value, correction);
    item.use = use;
    return correction;
}

std::string writtenText(UserCalibration& user, ChannelIndex channel, double value) {
    const std::optional<double> stored = user.write(channel, value);
    if (!stored) return "is refused: the channel is blocked or locked";
    if (*stored == NO_VALUE) return "clears the channel: it is out of range";
    return "is stored as " + quantityText(*stored, inputUnit(channel));
}

void addWritten(Table& table, UserCalibration& user, std::size_t id, double value) {
    CalibrationItem& item = user.item(id);
    const auto channel = static_cast<ChannelIndex>(item.channel);
    const std::string what = inputName(item.channel) + " " + quantityText(value, inputUnit(item.channel)) + " ";
    addPair(table, "Written", what + writtenText(user, channel, value));
    if (item.use != 0) return;
    item.use = 1;
    user.calibration().UpdateCalibratedFlag(id);
    addPair(table, "If in use", what + writtenText(user, channel, value));
}

} // namespace

int runCalibrationList(const CommandContext& context) {
    UserCalibration user(context.platform);
    Table table({kRight, kLeft, kLeft, kLeft, kLeft, kLeft, kLeft, kLeft, kRight, kLeft});
    table.add({"No.", "Item", "Channel", "Column", "Row", "Use", "Line", "Table", "Problems", "File"});
    for (std::size_t id = 0; id < kCalibrationItemCount; ++id) {
        const CalibrationItem& item = user.item(id);
        table.add({std::to_string(id), printable(item.name), inputName(item.channel), inputName(item.columnInput),
                   inputName(item.rowInput), item.use != 0 ? "yes" : "-",
                   item.table.linear != 0 ? "straight" : "smooth", sizeText(item.table), problemText(user, id, item),
                   printable(item.file)});
    }
    context.out << table.text();
    return exit_code::kDone;
}

int runCalibrationShow(const CommandContext& context, const std::string& typed) {
    const auto id = itemNamed(context, typed);
    if (!id) return exit_code::kNotFound;
    UserCalibration user(context.platform);
    const CalibrationItem& item = user.item(*id);
    Table table({kLeft, kLeft});
    addPair(table, "Item", headLine(*id, item));
    addPair(table, "Channel", inputText(item.channel));
    addPair(table, "Columns", inputText(item.columnInput));
    addPair(table, "Rows", inputText(item.rowInput));
    addPair(table, "Unit", item.unit.empty() ? "none" : printable(item.unit));
    addPair(table, "File", printable(item.file) + (user.platform().exists(item.file) ? "" : " (not there)"));
    addPair(table, "Table", sizeText(item.table));
    context.out << table.text();
    if (!item.table.rows.empty()) context.out << '\n' << knotTable(item);
    return exit_code::kDone;
}

int runCalibrationEval(const CommandContext& context, const EvalOptions& options) {
    const auto id = itemNamed(context, options.item);
    if (!id) return exit_code::kNotFound;
    UserCalibration user(context.platform);
    CalibrationItem& item = user.item(*id);
    const double r = options.r.value_or(item.rowInput == item.channel ? NO_VALUE : user.current(item.rowInput));
    user.pretend(item.columnInput, options.x);
    if (options.r) user.pretend(item.rowInput, *options.r);

    Table table({kLeft, kLeft});
    addPair(table, "Item", headLine(*id, item));
    if (isInput(item.columnInput))
        addPair(table, "Column",
                inputName(item.columnInput) + " " + quantityText(options.x, inputUnit(item.columnInput)));
    if (isInput(item.rowInput))
        addPair(table, "Row",
                inputName(item.rowInput) + " " +
                    (r == NO_VALUE ? "unknown: the first row counts" : quantityText(r, inputUnit(item.rowInput))));
    const std::string unit = printable(item.unit);
    if (isInput(item.columnInput) || isInput(item.rowInput)) {
        double value = NO_VALUE;
        (void)EvalTable(item.table, options.x, isInput(item.rowInput) ? r : NO_VALUE, value);
        addPair(table, "Table", quantityText(value, unit));
    }
    addPair(table, "Correction", quantityText(correctionOf(user, *id, options.x), unit));
    if (const auto written = writtenValue(item, options)) addWritten(table, user, *id, *written);
    context.out << table.text();
    if (isInput(item.channel) && isInput(item.columnInput) &&
        isSignedAngle(unitClassOf(nullptr, static_cast<std::size_t>(item.columnInput))))
        context.out
            << "\nOn write, a table along an angle of -180\u00B0 to 180\u00B0 is entered with the size of the row "
               "input instead.\n";
    return exit_code::kDone;
}

} // namespace tallowmere::tools

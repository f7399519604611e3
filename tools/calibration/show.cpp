#include "tools/calibration/show.hpp"

#include "core/channels/channel_lookup.hpp"
#include "tools/calibration/check_calibration_file.hpp"
#include "tools/calibration/item_finder.hpp"
#include "tools/calibration/item_text.hpp"
#include "tools/calibration/user_calibration.hpp"
#include "tools/commands/json_output.hpp"
#include "tools/commands/table.hpp"
#include "tools/commands/text.hpp"

#include <nlohmann/json.hpp>

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

/// Empty without a file.
std::optional<std::size_t> problemsOf(const UserCalibration& user, std::size_t id, const CalibrationItem& item) {
    if (!user.platform().exists(item.file)) return std::nullopt;
    Findings findings;
    checkCalibrationFile(user.platform(), item.file, id, findings);
    return findings.count();
}

std::string problemText(const UserCalibration& user, std::size_t id, const CalibrationItem& item) {
    const auto problems = problemsOf(user, id, item);
    return !problems ? "no file" : *problems == 0 ? "-" : std::to_string(*problems);
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

Json inputJson(std::int32_t channel) {
    if (!isInput(channel)) return {};
    return {{"channel", channel}, {"name", inputName(channel)}, {"unit", jsonText(inputUnit(channel))}};
}

/// What list, show and eval say of an item.
Json itemJson(const UserCalibration& user, std::size_t id, const CalibrationItem& item) {
    return {{"item", id},
            {"name", printable(item.name)},
            {"in_use", item.use != 0},
            {"straight", item.table.linear != 0},
            {"channel", inputJson(item.channel)},
            {"column_input", inputJson(item.columnInput)},
            {"row_input", inputJson(item.rowInput)},
            {"unit", jsonText(printable(item.unit))},
            {"file", printable(item.file)},
            {"file_exists", user.platform().exists(item.file)}};
}

Json listJson(UserCalibration& user) {
    Json items = Json::array();
    for (std::size_t id = 0; id < kCalibrationItemCount; ++id) {
        const CalibrationItem& item = user.item(id);
        Json json = itemJson(user, id, item);
        std::size_t columns = 0;
        for (const CurveRow& row : item.table.rows) columns = std::max(columns, row.knots.size());
        json["rows"] = item.table.rows.size();
        json["columns"] = columns;
        const auto problems = problemsOf(user, id, item);
        json["problems"] = problems ? Json(*problems) : Json();
        items.push_back(std::move(json));
    }
    return items;
}

Json tableJson(const CalibrationTable& table) {
    Json rows = Json::array();
    for (const CurveRow& row : table.rows) {
        Json knots = Json::array();
        for (const CurveKnot& knot : row.knots) knots.push_back({{"x", jsonNumber(knot.x)}, {"y", jsonNumber(knot.y)}});
        rows.push_back({{"row_value", jsonNumber(row.rowValue)}, {"knots", std::move(knots)}});
    }
    return rows;
}

/// Says on the error stream what is wrong with the name.
std::optional<std::size_t> itemNamed(const CommandContext& context, const std::string& typed) {
    const FoundItem found = findItem(typed);
    if (!found.id) context.err << "tallowmere: " << found.error << '\n';
    return found.id;
}

/// The value that is written, where one of the two inputs is the calibrated channel itself and has a value.
std::optional<double> writtenValue(const CalibrationItem& item, double x, double r) {
    if (!isInput(item.channel)) return std::nullopt;
    if (item.columnInput == item.channel) return x;
    if (item.rowInput == item.channel && r != NO_VALUE) return r;
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

std::string writtenText(const std::optional<double>& stored, const std::string& unit) {
    if (!stored) return "is refused: the channel is blocked or locked";
    if (*stored == NO_VALUE) return "clears the channel: it is out of range";
    return "is stored as " + quantityText(*stored, unit);
}

/// What becomes of a written value.
struct Written {
    double value = NO_VALUE;
    std::optional<double> stored;      // NO_VALUE: the channel is cleared; empty: the write is refused
    bool inUse = false;                // the item
    std::optional<double> storedInUse; // the same with the item in use
};

/// What eval tells, computed once.
struct Evaluation {
    double x = NO_VALUE;
    double r = NO_VALUE;
    double table = NO_VALUE;
    double correction = NO_VALUE;
    std::optional<Written> written;
};

Written writtenTo(UserCalibration& user, std::size_t id, double value) {
    CalibrationItem& item = user.item(id);
    const auto channel = static_cast<ChannelIndex>(item.channel);
    Written written{value, user.write(channel, value), item.use != 0, {}};
    if (!written.inUse) {
        item.use = 1;
        user.calibration().UpdateCalibratedFlag(id);
    }
    written.storedInUse = written.inUse ? written.stored : user.write(channel, value);
    return written;
}

Evaluation evaluate(UserCalibration& user, std::size_t id, const EvalOptions& options) {
    CalibrationItem& item = user.item(id);
    Evaluation result;
    result.x = options.x;
    result.r = options.r.value_or(user.current(item.rowInput));
    user.pretend(item.columnInput, options.x);
    if (options.r) user.pretend(item.rowInput, *options.r);
    if (isInput(item.columnInput) || isInput(item.rowInput))
        (void)EvalTable(item.table, options.x, isInput(item.rowInput) ? result.r : NO_VALUE, result.table);
    const auto value = writtenValue(item, options.x, result.r);
    result.correction = correctionOf(user, id, value.value_or(item.rowInput == item.channel ? NO_VALUE : options.x));
    if (value) result.written = writtenTo(user, id, *value);
    return result;
}

void addWritten(Table& table, const CalibrationItem& item, const Written& written) {
    const std::string unit = inputUnit(item.channel);
    const std::string what = inputName(item.channel) + " " + quantityText(written.value, unit) + " ";
    addPair(table, "Written", what + writtenText(written.stored, unit));
    if (!written.inUse) addPair(table, "If in use", what + writtenText(written.storedInUse, unit));
}

Json storedJson(const std::optional<double>& stored) {
    return {{"accepted", stored.has_value()}, {"value", stored ? jsonNumber(*stored) : Json()}};
}

void addEvaluation(Json& json, const Evaluation& evaluation) {
    json["x"] = jsonNumber(evaluation.x);
    json["r"] = jsonNumber(evaluation.r);
    json["table"] = jsonNumber(evaluation.table);
    json["correction"] = jsonNumber(evaluation.correction);
    const auto& written = evaluation.written;
    json["written"] = written ? jsonNumber(written->value) : Json();
    json["stored"] = written ? storedJson(written->stored) : Json();
    json["stored_if_in_use"] = written ? storedJson(written->storedInUse) : Json();
}

} // namespace

int runCalibrationList(const CommandContext& context, bool json) {
    UserCalibration user(context.platform);
    if (json) {
        writeJson(context.out, listJson(user));
        return exit_code::kDone;
    }
    Table table({kRight, kLeft, kLeft, kLeft, kLeft, kLeft, kLeft, kLeft, kRight, kLeft});
    table.add({"No.", "Item", "Channel", "Column", "Row", "Use", "Line", "Table", "Problems", "File"});
    for (std::size_t id = 0; id < kCalibrationItemCount; ++id) {
        const CalibrationItem& item = user.item(id);
        table.add({std::to_string(id), printable(item.name), inputName(item.channel), inputName(item.columnInput),
                   inputName(item.rowInput), item.use != 0 ? "yes" : "-",
                   item.table.linear != 0 ? "straight" : "smooth", sizeText(item.table), problemText(user, id, item),
                   printable(item.file)});
    }
    writeTable(context, table);
    return exit_code::kDone;
}

int runCalibrationShow(const CommandContext& context, const std::string& typed, bool json) {
    const auto id = itemNamed(context, typed);
    if (!id) return exit_code::kNotFound;
    UserCalibration user(context.platform);
    const CalibrationItem& item = user.item(*id);
    if (json) {
        Json answer = itemJson(user, *id, item);
        answer["table"] = tableJson(item.table);
        writeJson(context.out, answer);
        return exit_code::kDone;
    }
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
    const CalibrationItem& item = user.item(*id);
    Json json = itemJson(user, *id, item);
    const std::string head = headLine(*id, item);
    const Evaluation found = evaluate(user, *id, options);
    if (options.json) {
        addEvaluation(json, found);
        writeJson(context.out, json);
        return exit_code::kDone;
    }
    const std::string unit = printable(item.unit);
    const std::string row =
        found.r == NO_VALUE ? "unknown: the first row counts" : quantityText(found.r, inputUnit(item.rowInput));
    Table table({kLeft, kLeft});
    addPair(table, "Item", head);
    if (isInput(item.columnInput))
        addPair(table, "Column",
                inputName(item.columnInput) + " " + quantityText(options.x, inputUnit(item.columnInput)));
    if (isInput(item.rowInput)) addPair(table, "Row", inputName(item.rowInput) + " " + row);
    if (isInput(item.columnInput) || isInput(item.rowInput)) addPair(table, "Table", quantityText(found.table, unit));
    addPair(table, "Correction", quantityText(found.correction, unit));
    if (found.written) addWritten(table, item, *found.written);
    context.out << table.text();
    if (isInput(item.channel) && isInput(item.columnInput) &&
        isSignedAngle(unitClassOf(nullptr, static_cast<std::size_t>(item.columnInput))))
        context.out
            << "\nOn write, a table along an angle of -180\u00B0 to 180\u00B0 is entered with the size of the row "
               "input instead.\n";
    return exit_code::kDone;
}

} // namespace tallowmere::tools

#include "tools/calibration/plot.hpp"

#include "tools/calibration/file_names.hpp"
#include "tools/calibration/item_finder.hpp"
#include "tools/calibration/svg_chart.hpp"
#include "tools/calibration/text_chart.hpp"
#include "tools/calibration/user_calibration.hpp"
#include "tools/commands/text.hpp"

namespace tallowmere::tools {

int runCalibrationPlot(const CommandContext& context, const std::string& typed, const std::string& file) {
    const FoundItem found = findItem(typed);
    if (!found.id) {
        context.err << "tallowmere: " << found.error << '\n';
        return exit_code::kNotFound;
    }
    UserCalibration user(context.platform);
    CalibrationItem& item = user.item(*found.id);
    if (item.table.rows.empty()) {
        context.err << "tallowmere: the table is empty: " << printable(item.file)
                    << (user.platform().exists(item.file) ? " has no values\n" : " is not there\n");
        return exit_code::kNotFound;
    }
    const Chart chart = makeChart(*found.id, item);
    if (chart.left != 0)
        context.err << "tallowmere: " << chart.left << " knots have no value or are too large to be drawn\n";
    if (file.empty()) {
        context.out << textChart(chart, context.columns(), context.terminal);
        return exit_code::kDone;
    }
    if (writeWholeFile(file, svgChart(chart))) return exit_code::kDone;
    context.err << "tallowmere: can't write " << printable(file) << '\n';
    return exit_code::kSystem;
}

} // namespace tallowmere::tools

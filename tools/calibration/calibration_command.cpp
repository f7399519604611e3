// The only file of this folder that sees the argument library, which takes long to compile.
#include "tools/calibration/calibration_command.hpp"

#include "tools/calibration/check.hpp"
#include "tools/calibration/plot.hpp"
#include "tools/calibration/show.hpp"
#include "tools/commands/common_options.hpp"

#include <CLI/CLI.hpp>

#include <memory>

namespace tallowmere::tools {
namespace {

constexpr char kFooter[] =
    R"(An ITEM is a number from 0 to 19 or a name such as Awa; case does not matter. Inputs are in base units: knots,
degrees, millibars. Nothing is changed by looking.)";

constexpr char kCheckFooter[] =
    R"(One problem a line: FILE:LINE: what is wrong; what is made of it. The exit code is 1 when there are problems,
2 when there is no such item or file.)";

void addEval(CLI::App& parent, const CommandContext& context, int& exitCode) {
    CLI::App* const command = parent.add_subcommand("eval", "Say what the table gives, and how a value is stored");
    const auto options = std::make_shared<EvalOptions>();
    command->add_option("ITEM", options->item, "Number or name")->required();
    command->add_option("X", options->x, "Value of the column input")->required();
    command->add_option("R", options->r, "Value of the row input; without it the current one");
    addJsonFlag(*command, options->json);
    command->callback([&context, &exitCode, options] { exitCode = runCalibrationEval(context, *options); });
}

void addPlot(CLI::App& parent, const CommandContext& context, int& exitCode) {
    CLI::App* const command = parent.add_subcommand("plot", "Draw knots and curves, one line a row");
    const auto item = std::make_shared<std::string>();
    const auto file = std::make_shared<std::string>();
    command->add_option("ITEM", *item, "Number or name")->required();
    command->add_option("-o,--output", *file, "An SVG file; without it the picture goes to the terminal")
        ->type_name("FILE");
    command->callback([&context, &exitCode, item, file] { exitCode = runCalibrationPlot(context, *item, *file); });
}

void addCalibration(CLI::App& app, const CommandContext& context, int& exitCode) {
    CLI::App* const command = app.add_subcommand("calibration", "Look at the user's calibration");
    command->require_subcommand(1);
    command->footer(kFooter);
    CLI::App* const list = command->add_subcommand("list", "List the items");
    const auto json = std::make_shared<bool>(false); // of the one command that is called
    addJsonFlag(*list, *json);
    list->callback([&context, &exitCode, json] { exitCode = runCalibrationList(context, *json); });
    CLI::App* const show = command->add_subcommand("show", "Show an item's table as loaded");
    const auto item = std::make_shared<std::string>();
    show->add_option("ITEM", *item, "Number or name")->required();
    addJsonFlag(*show, *json);
    show->callback([&context, &exitCode, item, json] { exitCode = runCalibrationShow(context, *item, *json); });
    addEval(*command, context, exitCode);
    addPlot(*command, context, exitCode);
}

void addCheck(CLI::App& app, const CommandContext& context, int& exitCode) {
    CLI::App* const command =
        app.add_subcommand("check", "Read settings, configuration and calibration strictly, and report problems");
    const auto target = std::make_shared<std::string>();
    command->add_option("TARGET", *target, "A calibration item or a file; without it everything there is");
    const auto json = std::make_shared<bool>(false);
    addJsonFlag(*command, *json);
    command->footer(kCheckFooter);
    command->callback([&context, &exitCode, target, json] { exitCode = runCheck(context, *target, *json); });
}

} // namespace

void addCalibrationCommands(CLI::App& app, const CommandContext& context, int& exitCode) {
    addCalibration(app, context, exitCode);
    addCheck(app, context, exitCode);
}

} // namespace tallowmere::tools

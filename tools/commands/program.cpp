// The only file of this folder that sees the argument library, which takes long to compile.
#include "tools/commands/program.hpp"

#include "tools/calibration/calibration_command.hpp"
#include "tools/commands/common_options.hpp"
#include "tools/commands/completion.hpp"
#include "tools/commands/get.hpp"
#include "tools/commands/list.hpp"
#include "tools/commands/manual.hpp"
#include "tools/commands/option_checks.hpp"
#include "tools/commands/set.hpp"
#include "tools/commands/status.hpp"
#include "tools/commands/text.hpp"
#include "tools/commands/watch.hpp"
#include "tools/feed/feed_command.hpp"
#include "tools/record/record_command.hpp"
#include "tools/simulate/simulate_command.hpp"

#include <CLI/CLI.hpp>

#include <limits>
#include <memory>

namespace tallowmere::tools {
namespace {

constexpr char kFooter[] =
    R"(A CHANNEL is a number from 0 to 413 or a name such as BSP ("tallowmere list"); case does not matter. Values are
in base units: knots, nautical miles, metres, degrees. "-" means no value.)";

constexpr char kSetFooter[] =
    R"(Positions are in degrees, north and east positive; a moment is days since 1899-12-30 UTC, a time span days.
A value outside the channel's plausible range clears it. What the own boat's satellite fix writes (Lat, Lon,
COG, SOG, ...) needs a host that accepts it, such as "tallowmere feed".)";

constexpr char kWatchFooter[] =
    R"(On a terminal the table is drawn anew in place. Otherwise there is one line for each channel at first, and
later one for each whose value has changed or become stale, checked each interval; its fields, separated by
tabs: time of reading, channel, value, unit, age in seconds, "stale" or nothing. While a recording is being played
the title says REPLAY, and the last field begins with "replay". Without shared data it waits, and makes none.

With --all on a terminal keys choose what is shown: n, a, c sort by name, age or number; / and a text search; v shows
channels without a value too; b and B go to another boat; arrows, PgUp, PgDn, Home and End scroll; q ends. "Writes/s"
is what was seen at 20 looks a second; "+" after it means at least. "2 levels" marks a channel whose value jumps back
and forth between two levels, as it does when two programs write it; docs/commands.md has the rule.)";

/// Where options are kept must outlive the parsing.
template <class Options> std::shared_ptr<Options> keep() {
    return std::make_shared<Options>();
}

void addBoatOption(CLI::App& command, BoatIndex& boat) {
    command.add_option("--boat", boat, "Boat number, 0 to 99; 0 is the own boat")
        ->check(wholeNumberCheck(0, kBoatCount - 1))
        ->type_name("BOAT")
        ->capture_default_str();
}

void addList(CLI::App& app, const CommandContext& context, int& exitCode) {
    CLI::App* const command = app.add_subcommand("list", "List channels, or boats, variables, flags");
    const auto what = keep<ListOf>();
    const auto flag = [&](const std::string& name, ListOf meant, const std::string& description) {
        return command->add_flag_callback(
            name, [what, meant] { *what = meant; }, description);
    };
    CLI::Option* const boats = flag("--boats", ListOf::Boats, "The boats: name, MMSI, colour, whether they have data");
    CLI::Option* const variables = flag("--vars", ListOf::Variables, "The system variables and integers");
    CLI::Option* const flags = flag("--flags", ListOf::Flags, "The system flags");
    boats->excludes(variables)->excludes(flags);
    variables->excludes(flags);
    const auto json = keep<bool>();
    addJsonFlag(*command, *json);
    command->callback([&context, &exitCode, what, json] { exitCode = runList(context, *what, *json); });
}

void addGet(CLI::App& app, const CommandContext& context, int& exitCode) {
    CLI::App* const command = app.add_subcommand("get", "Show the values of channels, once");
    const auto options = keep<GetOptions>();
    command->add_option("CHANNEL", options->channels, "Numbers or short names")->required();
    addBoatOption(*command, options->boat);
    addJsonFlag(*command, options->json);
    command->callback([&context, &exitCode, options] { exitCode = runGet(context, *options); });
}

void addSet(CLI::App& app, const CommandContext& context, int& exitCode) {
    CLI::App* const command = app.add_subcommand("set", "Write a value, and show what then stands there");
    const auto options = keep<SetOptions>();
    command->add_option("CHANNEL", options->channel, "Number or short name")->required();
    command->add_option("VALUE", options->value, "A number in the channel's base unit, or none")->required();
    addBoatOption(*command, options->boat);
    addJsonFlag(*command, options->json);
    command->footer(kSetFooter);
    command->callback([&context, &exitCode, options] { exitCode = runSet(context, *options); });
}

void addWatch(CLI::App& app, const CommandContext& context, int& exitCode) {
    CLI::App* const command = app.add_subcommand("watch", "Show the values of channels, live");
    const auto options = keep<WatchOptions>();
    CLI::Option* const channels =
        command->add_option("CHANNEL", options->channels, "Numbers or short names; without any the usual sailing ones");
    addBoatOption(*command, options->boat);
    command->add_option("--interval", options->intervalSeconds, "Seconds between rounds")
        ->check(numberCheck(kShortestInterval, kLongestInterval))
        ->type_name("SECONDS")
        ->capture_default_str();
    command->add_option("--count", options->count, "End after so many rounds; 0: go on")
        ->check(wholeNumberCheck(0, std::numeric_limits<int>::max()))
        ->type_name("ROUNDS");
    command->add_flag("--all", options->all, "Every channel that holds a value; on a terminal on the whole screen")
        ->excludes(channels);
    addJsonFlag(*command, options->json);
    command->footer(kWatchFooter);
    command->callback([&context, &exitCode, options] { exitCode = runWatch(context, *options); });
}

void addStatus(CLI::App& app, const CommandContext& context, int& exitCode) {
    CLI::App* const command = app.add_subcommand("status", "Tell whether there is shared data, and how alive it is");
    const auto json = keep<bool>();
    addJsonFlag(*command, *json);
    command->callback([&context, &exitCode, json] { exitCode = runStatus(context, *json); });
}

/// What is told of the program as a whole: installed with it.
void addDescriptions(CLI::App& app, const CommandContext& context) {
    CLI::App* const completion = app.add_subcommand("completion", "Print a script by which a shell completes commands");
    const auto shell = keep<std::string>();
    std::vector<std::string> shells;
    for (const CompletionShell& each : kCompletionShells) shells.emplace_back(each.name);
    completion->add_option("SHELL", *shell, "bash or zsh")->required()->check(CLI::IsMember(shells))->type_name("");
    completion->callback([&app, &context, shell] {
        for (const CompletionShell& each : kCompletionShells)
            if (*shell == each.name) context.out << each.script(describe(app));
    });
    CLI::App* const manual = app.add_subcommand("manual", "Print the manual page, for man");
    manual->callback([&app, &context] {
        CommandText program = describe(app);
        program.footer = kFooter; // the page has a chapter of its own for the exit codes
        context.out << manualPage(program, TALLOWMERE_VERSION);
    });
}

std::string footerWithExitCodes() {
    std::string text = std::string(kFooter) + "\n\nExit codes:\n";
    for (const exit_code::Meaning& meaning : exit_code::kAll)
        text += "  " + std::to_string(meaning.code) + "  " + meaning.text + "\n";
    text.pop_back();
    return text;
}

/// Where no command was found, what stands in its place says more than that one is required.
std::string usageError(const CLI::App& app, const CLI::ParseError& error) {
    const CLI::App* last = &app; // of the commands that were found
    while (!last->get_subcommands().empty()) last = last->get_subcommands().front();
    const bool wantsCommand = !last->get_subcommands([](const CLI::App*) { return true; }).empty();
    const std::vector<std::string> unknown = last->remaining();
    if (!wantsCommand) return error.what();
    // The parser calls it a subcommand; everywhere else it is a command.
    if (unknown.empty())
        return dynamic_cast<const CLI::RequiredError*>(&error) ? "a command is required" : error.what();
    return (unknown.front().starts_with('-') ? "there is no option \"" : "there is no command \"") + unknown.front() +
           '"';
}

int reportUsage(const CommandContext& context, const CLI::App& app, const CLI::ParseError& error) {
    const auto used = app.get_subcommands();
    context.err << "tallowmere: " << printable(usageError(app, error)) << "\nTry \"tallowmere "
                << (used.empty() ? "" : used.front()->get_name() + " ") << "--help\".\n";
    return exit_code::kUsage;
}

} // namespace

int runProgram(const CommandContext& context, const std::vector<std::string>& arguments) {
    int exitCode = exit_code::kDone;
    CLI::App app("Live sailing data, shared by every program on the boat's PC.", "tallowmere");
    app.set_version_flag("--version", "tallowmere " TALLOWMERE_VERSION);
    app.require_subcommand(1); // one only: what follows it may be a channel called "Set"
    addList(app, context, exitCode);
    addGet(app, context, exitCode);
    addSet(app, context, exitCode);
    addWatch(app, context, exitCode);
    addStatus(app, context, exitCode);
    addCalibrationCommands(app, context, exitCode);
    addFeedCommand(app, exitCode);
    addSimulateCommand(app, exitCode);
    addRecordingCommands(app, context, exitCode);
    addDescriptions(app, context);
    app.footer(footerWithExitCodes()); // now, so that no command inherits it

    // The parser takes the arguments last first, without the program's name.
    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
    if (!reversed.empty()) reversed.pop_back();
    try {
        app.parse(std::move(reversed));
    } catch (const CLI::Success& success) { // --help, --version
        return app.exit(success, context.out, context.err);
    } catch (const CLI::ParseError& error) {
        return reportUsage(context, app, error);
    }
    return exitCode;
}

} // namespace tallowmere::tools

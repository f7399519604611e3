// The only file of this folder that sees the argument library, which takes long to compile.
#include "tools/record/record_command.hpp"

#include "core/channels/catalogue.hpp"
#include "platform/terminal.hpp"
#include "tools/commands/option_checks.hpp"
#include "tools/record/play.hpp"
#include "tools/record/plot.hpp"
#include "tools/record/record.hpp"

#include <CLI/CLI.hpp>

#include <memory>

namespace tallowmere::tools {
namespace {

using recording::PlayOptions;
using recording::PlotOptions;
using recording::RecordOptions;

constexpr double kLongest = 1e9; // seconds

constexpr char kRecordFooter[] =
    R"(Each value is a row with the time when it was written. Without -o the file is named by the time and lies in the
current folder. An SQLite recording that is there is added to; a CSV file that is there is left alone. At most a second
is lost when the machine stops. Nothing is written into the shared data, and none is made: the command waits for it.
The file is described in docs/recording.md.)";

constexpr char kPlayFooter[] =
    R"(A place in a recording is a moment in UTC such as 2025-11-21T12:34:56Z, or seconds after its start such as +90.
Values are stored as they were recorded, with time stamps of now. While it plays, "status" and "watch" say REPLAY, and
so does the own boat's name in every other program. At the end what was played is taken out again. Unless forced it
ends when a host comes, such as "feed". While one recording is played another can't be.)";

constexpr char kPlotFooter[] =
    R"(A place in a recording is a moment in UTC such as 2025-11-21T12:34:56Z, or seconds after its start such as +90.
Without -o the picture goes to standard output.)";

void addRecord(CLI::App& app, const CommandContext& context, int& exitCode) {
    CLI::App* const command = app.add_subcommand("record", "Write channels into a file, as they change");
    const auto options = std::make_shared<RecordOptions>();
    command->add_option("CHANNEL", options->channels, "Numbers or names; without any those whose log flag is set");
    command->add_option("-o,--output", options->file, "An SQLite database, or a CSV file by its ending")
        ->type_name("FILE");
    command->add_flag("--csv", options->csv, "Write CSV, whatever the file's name");
    command->add_option("--boat", options->boats, "Only this boat, 0 to 99; may be given several times")
        ->check(wholeNumberCheck(0, kBoatCount - 1))
        ->type_name("BOAT")
        ->allow_extra_args(false);
    command->add_option("--rate", options->rate, "How many times a second to look for changes")
        ->check(numberCheck(recording::kSlowestRate, recording::kHighestRate))
        ->type_name("HZ")
        ->capture_default_str();
    command->add_option("--seconds", options->seconds, "End after so long; 0: go on")
        ->check(numberCheck(0.0, kLongest))
        ->type_name("SECONDS");
    command->footer(kRecordFooter);
    command->callback([&context, &exitCode, options] {
        options->progress = platform::errorIsTerminal();
        exitCode = runRecord(context, *options);
    });
}

void addPlay(CLI::App& app, const CommandContext& context, int& exitCode) {
    CLI::App* const command = app.add_subcommand("play", "Put a recording into the shared data, as if it were now");
    const auto options = std::make_shared<PlayOptions>();
    command->add_option("FILE", options->files, "Recordings, one after the other")->required();
    command->add_option("--speed", options->speed, "Pace: 1 as recorded, 2 twice as fast, 0 at once")
        ->check(speedCheck())
        ->type_name("FACTOR")
        ->capture_default_str();
    command->add_option("--from", options->from, "Where to begin")->type_name("PLACE");
    command->add_option("--to", options->to, "Where to end")->type_name("PLACE");
    command->add_flag("--loop", options->loop, "Start again at the end");
    command->add_flag("--force", options->force, "Play even where a host has taken the shared data");
    command->footer(kPlayFooter);
    command->callback([&context, &exitCode, options] {
        options->progress = platform::errorIsTerminal();
        exitCode = runPlay(context, *options);
    });
}

void addPlot(CLI::App& app, const CommandContext& context, int& exitCode) {
    CLI::App* const command = app.add_subcommand("plot", "Draw channels of a recording over time");
    const auto options = std::make_shared<PlotOptions>();
    command->add_option("FILE", options->file, "A recording")->required();
    command->add_option("CHANNEL", options->channels, "Numbers or names")->required();
    command->add_option("-o,--output", options->output, "The SVG file to write")->type_name("FILE");
    command->add_option("--from", options->from, "Where to begin")->type_name("PLACE");
    command->add_option("--to", options->to, "Where to end")->type_name("PLACE");
    command->add_option("--boat", options->boat, "Boat number, 0 to 99; 0 is the own boat")
        ->check(wholeNumberCheck(0, kBoatCount - 1))
        ->type_name("BOAT")
        ->capture_default_str();
    command->footer(kPlotFooter);
    command->callback([&context, &exitCode, options] { exitCode = runPlot(context, *options); });
}

} // namespace

void addRecordingCommands(CLI::App& app, const CommandContext& context, int& exitCode) {
    addRecord(app, context, exitCode);
    addPlay(app, context, exitCode);
    addPlot(app, context, exitCode);
}

} // namespace tallowmere::tools

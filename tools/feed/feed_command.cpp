#include "tools/feed/feed_command.hpp"

#include "platform/terminal.hpp"
#include "tools/commands/exit_codes.hpp"
#include "tools/commands/option_checks.hpp"
#include "tools/feed/feed_host.hpp"
#include "tools/feed/feed_run.hpp"
#include "tools/feed/summary.hpp"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

namespace tallowmere {
namespace {

struct Arguments {
    std::string source;
    double speed = 1.0;
    bool quiet = false;
    bool raw = false;
};

struct Ending {
    int exitCode = tools::exit_code::kDone;
    bool stuck = false; // see Source::isStuck
};

namespace exit_code = tools::exit_code;

Ending failure(feed::Reporter& reporter, int exitCode, const std::string& why) {
    reporter.line("tallowmere feed: " + why);
    return {exitCode};
}

Ending feedFrom(const Arguments& arguments) {
    feed::Reporter reporter(stderr, platform::errorIsTerminal(), arguments.quiet);
    const auto tell = [&reporter](std::string_view text) { reporter.line(text); };
    platform::prepareStandardStreams();
    const std::atomic<bool>& stop = platform::stopRequested();

    feed::OpenedSource opened = feed::openSource(arguments.source, tell);
    if (!opened.source)
        return failure(reporter, opened.badName ? exit_code::kUsage : exit_code::kNotFound, opened.error);

    feed::FeedHost host(platform::hostPlatform(), platform::makeHostWindow(), tell,
                        arguments.raw ? feed::FeedHost::Values::Raw : feed::FeedHost::Values::Calibrated);
    if (!host.ready())
        return failure(reporter, exit_code::kSystem,
                       "the shared data can be neither made nor opened; see the message before this one");

    feed::Feed feed(host.sink());
    const bool complete =
        feed::runFeed(feed, *opened.source, {arguments.speed}, stop, reporter, [&host] { host.poll(); });
    const std::string name = arguments.source == "-" ? "standard input" : arguments.source;
    reporter.line(name + ":\n" + feed::summaryText(feed.counts(), name));
    Ending ending{complete ? exit_code::kDone : exit_code::kNotFound, opened.source->isStuck()};
    if (!complete) reporter.line("tallowmere feed: " + name + ": " + opened.source->error());
    return ending;
}

} // namespace

void addFeedCommand(CLI::App& app, int& exitCode) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* const command =
        app.add_subcommand("feed", "Turn NMEA 0183 from a file or the network into channels, as their host");
    command
        ->add_option("SOURCE", arguments->source,
                     "A recording's file name, - (standard input), udp:PORT or tcp:HOST:PORT")
        ->required()
        ->type_name("");
    command->add_option("--speed", arguments->speed, "Pace of a recording: 1 as recorded, 2 twice as fast, 0 at once")
        ->check(tools::speedCheck())
        ->type_name("FACTOR")
        ->capture_default_str();
    command->add_flag("-q,--quiet", arguments->quiet, "Show no progress");
    command->add_flag("--raw", arguments->raw, "Store values as they come, not through the calibration");
    command->footer("Progress and the summary at the end go to standard error.");
    command->callback([arguments, &exitCode] {
        const Ending ending = feedFrom(*arguments);
        exitCode = ending.exitCode;
        if (!ending.stuck) return;
        std::fflush(stdout);
        std::fflush(stderr);
        std::_Exit(exitCode);
    });
}

} // namespace tallowmere

#include "tools/simulate/simulate_command.hpp"

#include "core/channels/time_scale.hpp"
#include "platform/platform.hpp"
#include "platform/terminal.hpp"
#include "tools/commands/exit_codes.hpp"
#include "tools/commands/option_checks.hpp"
#include "tools/simulate/instruments.hpp"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <iostream>
#include <limits>
#include <memory>
#include <thread>

namespace tallowmere {
namespace {

struct Arguments {
    std::uint64_t seconds = 0; // 0: without end
    double speed = 1.0;
    std::uint32_t seed = 1;
};

constexpr std::int64_t kMostSeconds = 1'000'000'000; // thirty years

using Clock = std::chrono::steady_clock;

/// In short pieces, so that the user can stop the program.
void sleepUntil(Clock::time_point due) {
    constexpr auto kPiece = std::chrono::milliseconds(50);
    for (auto now = Clock::now(); now < due && !platform::stopRequested(); now = Clock::now())
        std::this_thread::sleep_for(std::min<Clock::duration>(kPiece, due - now));
}

void runRace(const Arguments& arguments) {
    platform::prepareStandardStreams();
    simulate::Race race(arguments.seed);
    std::int64_t ticks = platform::hostPlatform().now() / kTicksPerSecond * kTicksPerSecond;
    const auto start = Clock::now();
    for (std::uint64_t second = 1; !platform::stopRequested(); ++second) {
        race.step();
        ticks += kTicksPerSecond;
        std::cout << simulate::linesOf(race, ticks) << std::flush;
        if (!std::cout || second == arguments.seconds) break; // why it can't be written is for the program's end
        if (arguments.speed > 0.0)
            sleepUntil(start + std::chrono::duration_cast<Clock::duration>(
                                   std::chrono::duration<double>(static_cast<double>(second) / arguments.speed)));
    }
}

} // namespace

void addSimulateCommand(CLI::App& app, int& exitCode) {
    auto arguments = std::make_shared<Arguments>();
    CLI::App* const command =
        app.add_subcommand("simulate", "Write a simulated race start to standard output, as NMEA 0183");
    command->add_option("--seconds", arguments->seconds, "End after so many seconds of the race; 0: go on")
        ->check(tools::wholeNumberCheck(0, kMostSeconds))
        ->type_name("SECONDS")
        ->capture_default_str();
    command->add_option("--speed", arguments->speed, "1 real time, 2 twice as fast, 0 at once")
        ->check(tools::speedCheck())
        ->type_name("FACTOR")
        ->capture_default_str();
    command->add_option("--seed", arguments->seed, "A number; the same one gives the same race")
        ->check(tools::wholeNumberCheck(0, std::numeric_limits<std::uint32_t>::max()))
        ->type_name("SEED")
        ->capture_default_str();
    command->callback([arguments, &exitCode] {
        runRace(*arguments);
        exitCode = tools::exit_code::kDone;
    });
}

} // namespace tallowmere

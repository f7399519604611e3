// The command "simulate" of the command-line program.
#pragma once

namespace CLI {
class App;
}

namespace tallowmere {

/// Adds "simulate [--seconds N] [--speed X] [--seed S]", which writes a simulated race start to standard
/// output as NMEA 0183, second by second. Ends after N seconds, when the user stops it, or when nobody reads
/// any more; `exitCode` becomes 0. `exitCode` must live until the arguments have been parsed.
void addSimulateCommand(CLI::App& app, int& exitCode);

} // namespace tallowmere

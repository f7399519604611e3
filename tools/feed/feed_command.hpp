// The command "feed" of the command-line program.
#pragma once

namespace CLI {
class App;
}

namespace tallowmere {

/// Adds "feed FILE|-|udp:PORT|tcp:HOST:PORT [--speed X] [--raw]". When the command is given it runs until its source
/// ends or the user stops it, and sets `exitCode`: 0; 1 when the source can't be read, 2 when its name is wrong,
/// 3 when the shared data can't be made, each told on standard error. `exitCode` must live until the arguments
/// have been parsed.
void addFeedCommand(CLI::App& app, int& exitCode);

} // namespace tallowmere

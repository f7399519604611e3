// The command "feed" of the command-line program.
#pragma once

namespace CLI {
class App;
}

namespace tallowmere {

/// Adds "feed FILE|-|udp:PORT|tcp:HOST:PORT [--speed X]". When the command is given it runs until its source
/// ends or the user stops it, and sets `exitCode`: 0, or 1 after an error, which it has then told on standard
/// error. `exitCode` must live until the arguments have been parsed.
void addFeedCommand(CLI::App& app, int& exitCode);

} // namespace tallowmere

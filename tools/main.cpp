// The program `tallowmere`: sets up the streams and hands the command line over.
#include "platform/terminal.hpp"
#include "tools/commands/program.hpp"
#include "tools/standard_output.hpp"

#include <exception>
#include <iostream>

using namespace tallowmere;

namespace {

/// The exit code, unless the output was lost. A reader who has gone is nobody's fault.
int finish(const tools::StandardOutput& output, int exitCode) {
    if (std::cout.flush() || platform::readerHasGone(output.error())) return exitCode;
    std::cerr << "tallowmere: the output could not be written\n";
    return tools::exit_code::kSystem;
}

} // namespace

int main(int argc, char** argv) {
    const tools::StandardOutput output;
    platform::prepareStandardStreams();
    const tools::CommandContext context{platform::hostPlatform(),
                                        std::cout,
                                        std::cerr,
                                        platform::stopRequested(),
                                        platform::outputIsTerminal(),
                                        [] { return platform::screenSize().columns; },
                                        platform::screenSize,
                                        platform::openKeyboard,
                                        platform::settingsComplaints};
    try {
        return finish(output, tools::runProgram(context, platform::commandLine(argc, argv)));
    } catch (const std::exception& error) { // out of memory, most likely
        std::cerr << "tallowmere: " << error.what() << '\n';
        return tools::exit_code::kSystem;
    }
}

// The program `tallowmere`: sets up the streams and hands the command line over.
#include "platform/terminal.hpp"
#include "tools/commands/lost_output.hpp"
#include "tools/commands/program.hpp"

#include <cerrno>
#include <cstdio>
#include <exception>
#include <iostream>

using namespace tallowmere;

namespace {

// Whole answers leave in one piece: a reader of the first lines only (head) does not break the writer.
constexpr std::size_t kOutputBuffer = 65536;

/// The exit code, unless the output was lost. A reader who has gone is nobody's fault.
int finish(int exitCode) {
    errno = 0;
    std::cout.flush();
    const bool written = std::cout.good() && std::fflush(stdout) == 0;
    const int error = errno;
    if (written || tools::readerHasGone(error)) return exitCode;
    std::cerr << tools::kOutputLost;
    return tools::exit_code::kSystem;
}

} // namespace

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IOFBF, kOutputBuffer);
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
        return finish(tools::runProgram(context, platform::commandLine(argc, argv)));
    } catch (const std::exception& error) { // out of memory, most likely
        std::cerr << "tallowmere: " << error.what() << '\n';
        return tools::exit_code::kSystem;
    }
}

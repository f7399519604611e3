// What the command-line program asks of its terminal. Not part of the shared library.
#pragma once

#include <atomic>
#include <string>
#include <string_view>
#include <vector>

namespace tallowmere::platform {

/// The command line in UTF-8, program name first, whatever the system's own encoding.
[[nodiscard]] std::vector<std::string> commandLine(int argc, const char* const* argv);

/// True when standard output is a terminal that understands ANSI escape sequences; switches them on
/// where that is needed. A pipe or a file is no terminal.
[[nodiscard]] bool outputIsTerminal() noexcept;

/// The same of standard error: each of the two may be redirected without the other.
[[nodiscard]] bool errorIsTerminal() noexcept;

/// Makes standard output take UTF-8 text and standard input give bytes unchanged. A reader of a pipe who goes ends no
/// program, but makes writing fail.
void prepareStandardStreams() noexcept;

/// True when a write failed because the reader of the pipe has gone. error: errno after the write
[[nodiscard]] bool readerHasGone(int error) noexcept;

/// Set to true, from now on, when the user asks the program to end (Ctrl-C, SIGTERM, a closed console).
[[nodiscard]] const std::atomic<bool>& stopRequested() noexcept;

} // namespace tallowmere::platform

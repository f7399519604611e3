#include "tools/standard_output.hpp"

#include <cerrno>
#include <cstdio>
#include <iostream>

namespace tallowmere::tools {
namespace {

char buffer[65536]; // one of stdio's own would be of the size that it likes

} // namespace

StandardOutput::StandardOutput() : before_(std::cout.rdbuf(this)) {
    std::setvbuf(stdout, buffer, _IOFBF, sizeof buffer);
}

StandardOutput::~StandardOutput() {
    std::cout.rdbuf(before_);
}

StandardOutput::int_type StandardOutput::overflow(int_type character) {
    if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
    const char text = traits_type::to_char_type(character);
    return xsputn(&text, 1) == 1 ? character : traits_type::eof();
}

std::streamsize StandardOutput::xsputn(const char* text, std::streamsize count) {
    errno = 0;
    const std::size_t written = std::fwrite(text, 1, static_cast<std::size_t>(count), stdout);
    note(written == static_cast<std::size_t>(count));
    return static_cast<std::streamsize>(written);
}

int StandardOutput::sync() {
    errno = 0;
    return note(std::fflush(stdout) == 0) ? 0 : -1;
}

bool StandardOutput::note(bool written) noexcept {
    if (!written && error_ == 0) error_ = errno;
    return written;
}

} // namespace tallowmere::tools

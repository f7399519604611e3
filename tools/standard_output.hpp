// What std::cout writes to in this program: standard output, with the reason when that fails.
#pragma once

#include <streambuf>

namespace tallowmere::tools {

/// While it lives std::cout writes through it. Whole answers leave in one piece: a reader of the first lines only
/// (head) has them all before it goes. One object in a program, before anything is written.
class StandardOutput : private std::streambuf {
  public:
    StandardOutput();
    ~StandardOutput() override;
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;

    /// errno of the first write that failed; 0 before that.
    [[nodiscard]] int error() const noexcept { return error_; }

  private:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(const char* text, std::streamsize count) override;
    int sync() override;
    bool note(bool written) noexcept;

    std::streambuf* before_;
    int error_ = 0;
};

} // namespace tallowmere::tools

// Lines out of a stream of bytes that arrives in pieces of any size.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallowmere::nmea {

/// A sentence has at most 82 characters, long ones of some devices a few hundred. What is longer than this
/// is no sentence but a stream without line ends, and is not kept.
inline constexpr std::size_t kLongestLine = 1024;

struct Line {
    std::string_view text;    // without its end; the first kLongestLine bytes of a longer line
    bool tooLong = false;     // the line was longer and has been cut
    std::uint64_t number = 0; // in the stream, from 1, empty lines included
};

/// A line ends with a line feed, a carriage return (old devices send nothing else) or both. Empty lines are
/// counted and passed over. Memory stays below kLongestLine plus a little, whatever arrives.
class LineSplitter {
  public:
    /// Takes bytes from the front of `bytes` up to the end of the next line that isn't empty. Empty when
    /// `bytes` ran out first: call again with the next piece. The text lives until the next call.
    [[nodiscard]] std::optional<Line> next(std::string_view& bytes);

    /// The last line of a stream that ended without a line end, if there is one.
    [[nodiscard]] std::optional<Line> finish();

  private:
    [[nodiscard]] Line take();
    void keep(std::string_view bytes);

    std::string pending_;      // the beginning of a line
    std::string line_;         // the line handed out last
    bool tooLong_ = false;     // of the pending line
    bool afterReturn_ = false; // a line feed now belongs to the line before
    std::uint64_t number_ = 0; // of the last ended line
};

} // namespace tallowmere::nmea

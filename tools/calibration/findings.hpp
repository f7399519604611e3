// What the strict readers have found.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tallowmere::tools {

/// What some editors put before UTF-8 text, and the library does not know.
inline constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

/// One problem. All text is printable UTF-8.
struct Problem {
    std::string place; // a file, or a value of the user's settings
    std::size_t line;  // from 1; 0 where there are no lines
    std::string what;
    std::string effect; // what the library makes of it

    /// "PLACE:LINE: what; effect"
    [[nodiscard]] std::string text() const;
};

/// The problems of one check, in the order in which they were found. Of one place the first hundred are kept and
/// the rest counted, so that a file of noise yields no megabytes.
class Findings {
  public:
    void add(std::u16string_view place, std::size_t line, std::string what, std::string effect);
    [[nodiscard]] bool empty() const noexcept { return count_ == 0; }
    /// All that were found, also those not kept.
    [[nodiscard]] std::size_t count() const noexcept { return count_; }
    [[nodiscard]] const std::vector<Problem>& kept() const noexcept { return kept_; }

  private:
    std::vector<Problem> kept_;
    std::size_t count_ = 0;
    std::size_t atPlace_ = 0; // of the last problem
    std::u16string place_;
};

/// A text of the user in quotes, printable, cut after 40 characters.
[[nodiscard]] std::string inQuotes(std::u16string_view text);
[[nodiscard]] std::string inQuotes(std::string_view text);

} // namespace tallowmere::tools

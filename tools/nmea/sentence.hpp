// A sentence taken apart: who sends what, and its fields as text.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace tallowmere::nmea {

/// The views point into the line that the sentence was made from and live as long as it does.
class Sentence {
  public:
    /// More fields than any sentence has; what comes behind is passed over.
    static constexpr std::size_t kMostFields = 128;

    /// start   '$' or '!'
    /// body    what stands between the start and the '*'
    Sentence(char start, std::string_view body) noexcept;

    [[nodiscard]] char start() const noexcept { return start_; }
    /// All before the first comma.
    [[nodiscard]] std::string_view address() const noexcept { return address_; }
    /// The two characters, letters or digits, that name the sending device ("GP", "02"); empty for a
    /// maker's own sentence and for an address of a strange form.
    [[nodiscard]] std::string_view talker() const noexcept { return talker_; }
    /// The three letters of a standard sentence ("RMC"); the whole address for a maker's own ("PGRMT") and
    /// for an address of a strange form.
    [[nodiscard]] std::string_view type() const noexcept { return type_; }
    /// True for sentences of the form that the standard defines.
    [[nodiscard]] bool isStandard() const noexcept { return !talker_.empty(); }

    [[nodiscard]] std::size_t fieldCount() const noexcept { return count_; }
    /// The text of a field, from 0 behind the address; empty for one that isn't there. Blanks around it are
    /// taken off.
    [[nodiscard]] std::string_view field(std::size_t index) const noexcept;

  private:
    char start_;
    std::string_view address_;
    std::string_view talker_;
    std::string_view type_;
    std::size_t count_ = 0;
    std::array<std::string_view, kMostFields> fields_;
};

} // namespace tallowmere::nmea

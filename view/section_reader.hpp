// Which section is looked at, if any.
#pragma once

#include "core/channels/shared_area.hpp"
#include "platform/platform.hpp"

#include <tallowmere/view.h>

#include <cstdint>
#include <memory>

namespace tallowmere {

/// Looks at the section while somebody owns it, and finds the next one. One thread at a time.
class SectionReader {
  public:
    /// How long an answer of the system about the section is taken for good.
    static constexpr std::int64_t kTrusted = 2'500'000; // 250 ms

    /// Attaches to the section when there is one. `platform` must outlive the reader.
    explicit SectionReader(platform::Platform& platform) noexcept;

    /// Lets the section go when nobody owns it any more and attaches to one that is there; asks the system when
    /// the last answer is older than kTrusted or the clock was set.
    tlm_view_attachment refresh() noexcept;
    /// The same, asking in any case.
    tlm_view_attachment refreshNow() noexcept;

    [[nodiscard]] tlm_view_attachment state() const noexcept;
    /// How many sections there have been.
    [[nodiscard]] std::uint32_t generation() const noexcept { return generation_; }
    /// Null while there is none.
    [[nodiscard]] const SharedArea* area() const noexcept;
    /// Account name of the user who made the section; empty when it can't be told.
    [[nodiscard]] std::u16string maker() const { return section_ ? section_->maker() : std::u16string(); }
    [[nodiscard]] std::int64_t now() const noexcept { return platform_.now(); }

  private:
    platform::Platform& platform_;
    std::unique_ptr<platform::SectionLook> section_;
    std::uint32_t generation_ = 0;
    std::int64_t asked_ = 0; // when, by the platform's clock
};

} // namespace tallowmere

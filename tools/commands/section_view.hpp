// Looking at the section without making one and without writing into it.
#pragma once

#include "core/channels/value_store.hpp"
#include "tools/commands/command_context.hpp"

#include <memory>
#include <string>

namespace tallowmere::tools {

class SectionView {
  public:
    /// Opens the section that is there; never makes one.
    explicit SectionView(platform::Platform& platform);

    /// Null when there is no section.
    [[nodiscard]] SharedArea* area() const noexcept { return values_.area(); }
    [[nodiscard]] explicit operator bool() const noexcept { return area() != nullptr; }
    /// For reading.
    [[nodiscard]] const ValueStore& values() const noexcept { return values_; }
    /// Account name of the user who made the section; empty when it can't be told.
    [[nodiscard]] std::u16string maker() const;

  private:
    std::unique_ptr<platform::SharedSection> section_;
    ValueStore values_;
};

} // namespace tallowmere::tools

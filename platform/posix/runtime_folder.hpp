// The folder for things that live as long as the processes that use them.
#pragma once

#include "platform/posix/descriptor.hpp"

#include <array>
#include <string_view>

namespace tallowmere::platform::posix {

/// Name of an entry of the runtime folder, held without allocation.
class EntryName {
  public:
    [[nodiscard]] const char* text() const noexcept { return text_.data(); }
    /// True when there is no name: it was empty, too long or no plain name.
    [[nodiscard]] bool empty() const noexcept { return text_.front() == '\0'; }

  private:
    friend class RuntimeFolder;
    std::array<char, 256> text_{}; // as long as names in a folder get, with its terminator
};

/// $XDG_RUNTIME_DIR when it is set and this user's alone; else /dev/shm, where every user's things lie, so
/// that names there end in the user's number. None when the system can't tell: somebody alone in another folder
/// than everybody else would be worse.
class RuntimeFolder {
  public:
    RuntimeFolder() noexcept;

    [[nodiscard]] int get() const noexcept { return folder_.get(); }
    explicit operator bool() const noexcept { return static_cast<bool>(folder_); }
    [[nodiscard]] EntryName entry(std::u16string_view name) const noexcept;

  private:
    Descriptor folder_;
    bool everybodys_ = false;
};

} // namespace tallowmere::platform::posix

// The file that holds the user's settings, and how it is replaced.
#pragma once

#include "platform/posix/descriptor.hpp"

#include <optional>
#include <string>

namespace tallowmere::platform::posix {

/// $XDG_CONFIG_HOME/tallowmere (default ~/.config/tallowmere) with its file "registry.reg". The folder and
/// the file must be the user's own and closed to the writing of group and others, and neither a symbolic link;
/// else it is as if they were not there, and nothing is written.
class SettingsFile {
  public:
    /// `make` makes the folder where missing.
    explicit SettingsFile(bool make);

    /// Where the file is, whether it is there or not; empty without a home.
    [[nodiscard]] static std::string path();
    /// True when there is anything at all under the file's name, taken or not.
    [[nodiscard]] static bool isThere();

    /// The file's bytes: an empty text when there is none, nothing at all when it can't be taken (not the
    /// user's own, no regular file, more than 16 MiB).
    [[nodiscard]] std::optional<std::string> read() const;
    /// Replaces the file as one step: others see the old or the new one, whatever happens.
    bool replace(const std::string& bytes) const;

    /// Keeps other writers away while it lives; they try for half a second before they give up. What is locked is
    /// the empty file "registry.reg.lock", which stays: the folder itself could be locked by everybody who may
    /// read it, this file is the user's alone.
    class WriteLock {
      public:
        explicit WriteLock(const SettingsFile& file) noexcept;
        ~WriteLock();
        WriteLock(const WriteLock&) = delete;
        WriteLock& operator=(const WriteLock&) = delete;
        explicit operator bool() const noexcept { return held_; }

      private:
        Descriptor file_;
        bool held_ = false;
    };

  private:
    Descriptor folder_;
};

} // namespace tallowmere::platform::posix

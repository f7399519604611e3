// The real system with settings, data folder and section of a test's own: what stands above the seam is tried on
// the real registry and real files. Link the library tallowmere_host_machine.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

namespace tallowmere::test {

/// The user's settings are out of sight while it lives, and the core settings name a data folder of this object's
/// own. One at a time, and on Windows one in all processes of the session: the section has one name.
class HostMachine {
  public:
    HostMachine();
    ~HostMachine();
    HostMachine(const HostMachine&) = delete;
    HostMachine& operator=(const HostMachine&) = delete;

    /// The data folder, with its sub-folders "config" and "calibration".
    [[nodiscard]] std::filesystem::path folder() const;

    /// True while this process has the section mapped; on Windows while anybody holds it.
    [[nodiscard]] bool holdsSection() const;

    /// Removes all settings, the data folder's name included.
    void clearSettings();
    /// Names the data folder in the core settings.
    void setFolder();
    /// Stores a value as it is given. Throws when the system stores another.
    void set(const std::u16string& key, const std::u16string& name, std::uint32_t type, const std::string& bytes);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

/// A text as the settings store it.
[[nodiscard]] inline std::string storedText(std::u16string text, std::size_t terminators = 1) {
    text.append(terminators, u'\0');
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}

/// Memory of whole pages with none behind it: who goes beyond the end ends the program.
class GuardedMemory {
  public:
    explicit GuardedMemory(std::size_t bytes);
    ~GuardedMemory();
    GuardedMemory(const GuardedMemory&) = delete;
    GuardedMemory& operator=(const GuardedMemory&) = delete;

    [[nodiscard]] char* begin() const { return begin_; }
    [[nodiscard]] char* end() const { return begin_ + size_; }

  private:
    char* begin_ = nullptr;
    std::size_t size_ = 0; // usable
};

} // namespace tallowmere::test

// Folders of a test's own on Linux, to which the environment points while the test runs.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace tallowmere::test {

/// Runtime, configuration and data folder below one temporary folder. What the environment said before
/// comes back with its end.
class PosixSurroundings {
  public:
    PosixSurroundings();
    ~PosixSurroundings();
    PosixSurroundings(const PosixSurroundings&) = delete;
    PosixSurroundings& operator=(const PosixSurroundings&) = delete;

    [[nodiscard]] std::filesystem::path top() const { return top_; }
    [[nodiscard]] std::filesystem::path runtime() const { return top_ / "run"; }
    [[nodiscard]] std::filesystem::path config() const { return top_ / "config"; }
    [[nodiscard]] std::filesystem::path data() const { return top_ / "data"; }
    [[nodiscard]] std::filesystem::path settingsFile() const { return config() / "tallowmere" / "registry.reg"; }

    /// Sets a variable, or unsets it.
    void setVariable(const char* name, const std::optional<std::string>& value);
    /// Gives everything to another user.
    void giveTo(uid_t user) const;

    void writeSettings(const std::string& bytes) const;
    [[nodiscard]] std::string readSettings() const;

  private:
    std::filesystem::path top_;
    std::vector<std::pair<std::string, std::optional<std::string>>> before_;
};

[[nodiscard]] std::string readBytes(const std::filesystem::path& file);
void writeBytes(const std::filesystem::path& file, const std::string& bytes);

} // namespace tallowmere::test

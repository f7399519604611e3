// What is on the screen.
#pragma once

#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <vector>

namespace tallowmere::test {

/// The whole screen at the moment of construction.
class Screenshot {
  public:
    Screenshot();

    /// Number of clearly red pixels in a part of the screen.
    [[nodiscard]] int redPixels(const RECT& part) const;
    /// Writes a bitmap file. False when that fails.
    [[nodiscard]] bool save(const std::filesystem::path& path) const;
    friend bool operator==(const Screenshot&, const Screenshot&) = default;

  private:
    int width_;
    int height_;
    std::vector<std::uint32_t> pixels_; // 0x00RRGGBB, the top row first
};

/// Where the artefacts of a test run are kept: the folder that TALLOWMERE_ARTIFACTS names, empty when
/// none is wanted.
[[nodiscard]] std::filesystem::path artifactFolder();

} // namespace tallowmere::test

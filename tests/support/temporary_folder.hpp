// A folder of one test's own, also beside the same test of another build or another user.
#pragma once

#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>

namespace tallowmere::test {

/// An empty folder below the system's temporary one, gone with this object. Throws when none can be made.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::random_device random;
        for (int tries = 0; tries < 100; ++tries) {
            path_ = std::filesystem::temp_directory_path() / ("tallowmere-" + std::to_string(random()));
            if (std::filesystem::create_directory(path_)) return;
        }
        throw std::runtime_error("no folder could be made in " + std::filesystem::temp_directory_path().string());
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

} // namespace tallowmere::test

// What every test of whole processes has: a machine without a section, settings and a folder of its own.
#pragma once

#include "tests/process/windows/client_process.hpp"
#include "tests/process/windows/section_view.hpp"
#include "tests/process/windows/user_settings.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tallowmere::test {

class WindowsProcesses : public testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    void writeConfigFile(const std::string& name, std::string_view content) const;

    /// The default data folder.
    [[nodiscard]] static std::filesystem::path defaultFolder();

    std::filesystem::path folder_; // empty, and the data folder unless the test says otherwise
    std::optional<UserSettings> settings_;

  private:
    bool defaultFolderWasThere_ = false;
};

} // namespace tallowmere::test

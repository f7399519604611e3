// What the contract's tests ask of an implementation beyond the seam itself: things put in place behind
// its back, and what it can't do.
#pragma once

#include "platform/host_window.hpp"
#include "platform/platform.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallowmere::test {

/// One implementation in surroundings of its own, which are empty at first.
class PlatformFixture {
  public:
    virtual ~PlatformFixture() = default;

    [[nodiscard]] virtual platform::Platform& platform() = 0;
    [[nodiscard]] virtual std::unique_ptr<platform::HostWindow> makeWindow() = 0;

    /// A section name and a settings key path that nobody else uses; the key is not there.
    [[nodiscard]] virtual std::u16string sectionName() const = 0;
    [[nodiscard]] virtual std::u16string settingsPath() const = 0;
    /// A folder that is there and empty, without a separator at its end.
    [[nodiscard]] virtual std::u16string folder() const = 0;

    virtual void putFile(const std::u16string& path, const std::string& bytes) = 0;
    [[nodiscard]] virtual std::string fileBytes(const std::u16string& path) = 0;
    struct Setting {
        std::u16string name;
        platform::SettingsType type;
        std::string bytes;
    };
    /// False for a value that the means at hand would not put in place byte for byte.
    [[nodiscard]] virtual bool canPut(const Setting&) const { return true; }
    /// Makes the key and these values in it.
    virtual void putSettings(const std::u16string& key, const std::vector<Setting>& settings) = 0;

    [[nodiscard]] virtual std::string_view lineEnd() const = 0;
    [[nodiscard]] virtual bool narrowTextIsUtf8() const = 0;
    /// False when a reader of this kind may hang, fault or go astray on documents that break the standard.
    [[nodiscard]] virtual bool readsBrokenXml() const = 0;
};

[[nodiscard]] std::unique_ptr<PlatformFixture> makeMemoryFixture();
[[nodiscard]] std::unique_ptr<PlatformFixture> makeHostFixture();

struct Implementation {
    const char* name;
    std::unique_ptr<PlatformFixture> (*make)();
};

inline void PrintTo(const Implementation& implementation, std::ostream* out) {
    *out << implementation.name;
}

/// A test of the contract, run for each implementation.
class ContractTest : public ::testing::TestWithParam<Implementation> {
  protected:
    [[nodiscard]] std::u16string joined(std::u16string folder, std::u16string_view name) {
        folder += platform.separator();
        return folder.append(name);
    }
    [[nodiscard]] std::u16string inFolder(std::u16string_view name) { return joined(fixture->folder(), name); }

    std::unique_ptr<PlatformFixture> fixture = GetParam().make();
    platform::Platform& platform = fixture->platform();
};

} // namespace tallowmere::test

/// Runs a suite against every implementation.
#define TALLOWMERE_CONTRACT(suite)                                                                                     \
    INSTANTIATE_TEST_SUITE_P(                                                                                          \
        , suite,                                                                                                       \
        ::testing::Values(Implementation{"Memory", makeMemoryFixture}, Implementation{"Host", makeHostFixture}),       \
        [](const auto& each) { return std::string(each.param.name); })

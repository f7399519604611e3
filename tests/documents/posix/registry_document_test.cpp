// The settings file that docs/settings.md shows is taken as it says.
#include "platform/posix/registry_complaints.hpp"
#include "platform/posix/registry_document.hpp"
#include "settings/reg_ex.hpp"
#include "tests/documents/document_blocks.hpp"
#include "tests/tools/cli/command_fixture.hpp"

namespace tallowmere::test {
namespace {

using platform::posix::RegistryDocument;

class RegistryInDocument : public CommandTest {
  protected:
    RegistryInDocument() {
        const RegistryDocument document(text);
        for (const std::u16string& key : {std::u16string(kCoreKey), std::u16string(kCalibrationKey)}) {
            const auto values = document.values(key);
            if (!values) continue;
            for (const auto& [name, value] : *values) machine.addBytes(key, spelled(name), value.type, bytesOf(value));
        }
    }

    const std::string text = documentBlock("settings.md", "reg registry.reg");

  private:
    static std::string bytesOf(const platform::posix::RegistryValue& value) {
        return {reinterpret_cast<const char*>(value.bytes.data()), value.bytes.size()};
    }
    /// As the library asks for it: the machine in memory tells case, the document doesn't.
    static std::u16string spelled(const std::u16string& folded) {
        for (const std::u16string_view name : {u"Sys_v0", u"Sys_i1", u"Sys_b27", u"CalUse_5", u"CalLinear_5"})
            if (platform::posix::foldName(name) == folded) return std::u16string(name);
        ADD_FAILURE() << "a value that is not expected";
        return folded;
    }
};

TEST_F(RegistryInDocument, HasNoLineThatCountsForNothing) {
    EXPECT_TRUE(platform::posix::registryComplaints(text, u"registry.reg").empty());
    EXPECT_EQ(machine.settings[kCoreKey].size(), 3U);
    EXPECT_EQ(machine.settings[kCalibrationKey].size(), 2U);
}

TEST_F(RegistryInDocument, FillsTheSection) {
    const SystemValues system(&area());
    EXPECT_EQ(system.variable(0), 11.0);
    EXPECT_EQ(system.integer(system_integer::kDepthUnit), 2);
    EXPECT_EQ(system.flag(system_flag::kComputeTurnRate), 1);
}

TEST_F(RegistryInDocument, SwitchesTheCalibrationOn) {
    CCore host(platform, true);
    const CalibrationItem& awa = host.calibration().item(calibration_item::kAwa);
    EXPECT_EQ(awa.use, 1);
    EXPECT_EQ(awa.table.linear, 1);
}

} // namespace
} // namespace tallowmere::test

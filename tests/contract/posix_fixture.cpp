#include "tests/contract/platform_fixture.hpp"
#include "tests/contract/posix_surroundings.hpp"

#include <array>
#include <cstdio>

namespace tallowmere::test {
namespace {

class PosixFixture final : public PlatformFixture {
  public:
    [[nodiscard]] platform::Platform& platform() override { return platform::hostPlatform(); }
    [[nodiscard]] std::unique_ptr<platform::HostWindow> makeWindow() override { return platform::makeHostWindow(); }
    [[nodiscard]] std::u16string sectionName() const override { return u"Contract"; }
    [[nodiscard]] std::u16string settingsPath() const override { return u"Software\\Contract"; }
    [[nodiscard]] std::u16string folder() const override { return surroundings_.data().u16string(); }
    void putFile(const std::u16string& path, const std::string& bytes) override { writeBytes(path, bytes); }
    [[nodiscard]] std::string fileBytes(const std::u16string& path) override { return readBytes(path); }

    void putSettings(const std::u16string& key, const std::vector<Setting>& settings) override {
        std::string text = "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\" +
                           std::filesystem::path(key).string() + "]\r\n";
        for (const Setting& each : settings) {
            text += "\"" + std::filesystem::path(each.name).string() + "\"=" + prefixOf(each.type);
            for (std::size_t i = 0; i < each.bytes.size(); ++i) {
                std::array<char, 8> digits{};
                std::snprintf(digits.data(), digits.size(), i == 0 ? "%02x" : ",%02x",
                              static_cast<unsigned>(static_cast<unsigned char>(each.bytes[i])));
                text += digits.data();
            }
            text += "\r\n";
        }
        surroundings_.writeSettings(text);
    }

    [[nodiscard]] std::string_view lineEnd() const override { return "\n"; }
    [[nodiscard]] bool narrowTextIsUtf8() const override { return true; }
    [[nodiscard]] bool readsBrokenXml() const override { return true; }

  private:
    static std::string prefixOf(platform::SettingsType type) {
        std::array<char, 24> prefix{};
        std::snprintf(prefix.data(), prefix.size(), "hex(%x):", static_cast<unsigned>(type));
        return prefix.data();
    }

    PosixSurroundings surroundings_;
};

} // namespace

std::unique_ptr<PlatformFixture> makeHostFixture() {
    return std::make_unique<PosixFixture>();
}

} // namespace tallowmere::test

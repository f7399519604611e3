#include "tests/contract/platform_fixture.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

namespace tallowmere::test {
namespace {

namespace fs = std::filesystem;

std::string randomName() {
    std::random_device random;
    return "TallowmereContract" + std::to_string(random());
}

void writeFile(const fs::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

/// Settings are put in place with the system's own command-line program, so that no call of the seam under
/// test is needed for it.
class WindowsFixture final : public PlatformFixture {
  public:
    WindowsFixture() { fs::create_directories(folder_); }
    ~WindowsFixture() override {
        if (putSettings_) static_cast<void>(std::system(("reg delete HKCU\\Software\\" + name_ + " /f > NUL").c_str()));
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }

    [[nodiscard]] platform::Platform& platform() override { return platform::hostPlatform(); }
    [[nodiscard]] std::unique_ptr<platform::HostWindow> makeWindow() override { return platform::makeHostWindow(); }
    [[nodiscard]] std::u16string sectionName() const override { return fs::path(name_).u16string(); }
    [[nodiscard]] std::u16string settingsPath() const override { return u"Software\\" + fs::path(name_).u16string(); }
    [[nodiscard]] std::u16string folder() const override { return folder_.u16string(); }
    void putFile(const std::u16string& path, const std::string& bytes) override { writeFile(path, bytes); }
    [[nodiscard]] std::string fileBytes(const std::u16string& path) override {
        std::ifstream stream(fs::path(path), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    /// The system's program gives texts the terminators that they lack; see tests/process for texts without.
    [[nodiscard]] bool canPut(const Setting& setting) const override {
        using enum platform::SettingsType;
        const bool isText = setting.type == String || setting.type == ExpandString || setting.type == MultiString;
        return !isText || (setting.bytes.size() % 2 == 0 && setting.bytes.ends_with(std::string(4, '\0')));
    }

    void putSettings(const std::u16string& key, const std::vector<Setting>& settings) override {
        std::string text =
            "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\" + fs::path(key).string() + "]\r\n";
        for (const Setting& each : settings)
            text += "\"" + fs::path(each.name).string() + "\"=" + dataOf(each) + "\r\n";
        std::string utf16 = "\xFF\xFE";
        for (const char c : text) utf16 += {c, '\0'};
        const fs::path file = folder_ / "settings.reg";
        writeFile(file, utf16);
        if (std::system(("reg import \"" + file.string() + "\" > NUL 2> NUL").c_str()) != 0)
            throw std::runtime_error("reg import");
        fs::remove(file);
        putSettings_ = true;
    }

    [[nodiscard]] std::string_view lineEnd() const override { return "\r\n"; }
    [[nodiscard]] bool narrowTextIsUtf8() const override { return false; }
    [[nodiscard]] bool readsBrokenXml() const override { return false; }

  private:
    static std::string dataOf(const Setting& setting) {
        std::array<char, 24> part{};
        std::snprintf(part.data(), part.size(), "hex(%x):", static_cast<unsigned>(setting.type));
        std::string data = part.data();
        for (std::size_t i = 0; i < setting.bytes.size(); ++i) {
            std::snprintf(part.data(), part.size(), i == 0 ? "%02x" : ",%02x",
                          static_cast<unsigned>(static_cast<unsigned char>(setting.bytes[i])));
            data += part.data();
        }
        return data;
    }

    std::string name_ = randomName();
    fs::path folder_ = fs::temp_directory_path() / name_;
    bool putSettings_ = false;
};

} // namespace

std::unique_ptr<PlatformFixture> makeHostFixture() {
    return std::make_unique<WindowsFixture>();
}

} // namespace tallowmere::test

#include "tests/contract/platform_fixture.hpp"
#include "tests/support/memory_platform.hpp"

namespace tallowmere::test {
namespace {

constexpr std::int64_t kTicksPerMillisecond = 10'000;

class MemoryFixture final : public PlatformFixture {
  public:
    MemoryFixture() {
        machine_.anyWindowExists = false;
        machine_.onSleep = [this](unsigned milliseconds) { machine_.now += milliseconds * kTicksPerMillisecond; };
        machine_.files[u"C:\\Contract"] = std::nullopt;
    }

    [[nodiscard]] platform::Platform& platform() override { return platform_; }
    [[nodiscard]] std::unique_ptr<platform::HostWindow> makeWindow() override { return machine_.makeWindow(); }
    [[nodiscard]] std::u16string sectionName() const override { return u"Contract"; }
    [[nodiscard]] std::u16string settingsPath() const override { return u"Software\\Contract"; }
    [[nodiscard]] std::u16string folder() const override { return u"C:\\Contract"; }
    void putFile(const std::u16string& path, const std::string& bytes) override { machine_.addFile(path, bytes); }
    [[nodiscard]] std::string fileBytes(const std::u16string& path) override {
        return machine_.files[path].value_or("a folder");
    }
    void putSettings(const std::u16string& key, const std::vector<Setting>& settings) override {
        machine_.settings[key];
        for (const Setting& each : settings) machine_.addBytes(key, each.name, each.type, each.bytes);
    }
    [[nodiscard]] std::string_view lineEnd() const override { return "\r\n"; }
    [[nodiscard]] bool narrowTextIsUtf8() const override { return true; }
    /// It reads documents with the host's reader.
    [[nodiscard]] bool readsBrokenXml() const override { return makeHostFixture()->readsBrokenXml(); }

  private:
    MemoryMachine machine_;
    MemoryPlatform platform_{machine_};
};

} // namespace

std::unique_ptr<PlatformFixture> makeMemoryFixture() {
    return std::make_unique<MemoryFixture>();
}

} // namespace tallowmere::test

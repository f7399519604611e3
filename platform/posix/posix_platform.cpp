// The operating system's own Platform on Linux: each call goes to the file that knows how.
#include "platform/posix/clock.hpp"
#include "platform/posix/environment.hpp"
#include "platform/posix/files.hpp"
#include "platform/posix/folders.hpp"
#include "platform/posix/host_message.hpp"
#include "platform/posix/notices.hpp"
#include "platform/posix/section.hpp"
#include "platform/posix/settings.hpp"
#include "platform/posix/text.hpp"
#include "platform/posix/xml.hpp"

namespace tallowmere::platform {
namespace posix {
namespace {

class PosixPlatform final : public Platform {
  public:
    constexpr PosixPlatform() = default;

    [[nodiscard]] std::int64_t now() const noexcept override { return wallClock(); }
    [[nodiscard]] std::optional<TimeZone> timeZone() const noexcept override { return localTimeZone(); }
    void sleepMilliseconds(unsigned milliseconds) const noexcept override {
        sleepFor(std::chrono::milliseconds(milliseconds));
    }

    [[nodiscard]] std::unique_ptr<SharedSection> openOrCreateSection(const std::u16string& name,
                                                                     std::size_t bytes) const override {
        return openOrCreateSectionFile(name, bytes);
    }
    [[nodiscard]] std::unique_ptr<SharedSection> openSection(const std::u16string& name,
                                                             std::size_t bytes) const override {
        return openSectionFile(name, bytes);
    }
    [[nodiscard]] std::unique_ptr<SectionLook> lookAtSection(const std::u16string& name,
                                                             std::size_t bytes) const override {
        return lookAtSectionFile(name, bytes);
    }

    [[nodiscard]] std::unique_ptr<SettingsKey> openSettings(const std::u16string& path) const override {
        return openSettingsKey(path);
    }
    [[nodiscard]] std::unique_ptr<SettingsKey> createSettings(const std::u16string& path) const override {
        return createSettingsKey(path);
    }

    [[nodiscard]] char16_t separator() const noexcept override { return u'/'; }
    [[nodiscard]] bool caseSensitivePaths() const noexcept override { return true; }
    /// Makes the folder where it is missing, as programs are asked to that keep data there.
    [[nodiscard]] std::u16string programDataFolder() const override {
        const std::string folder = userFolder("XDG_DATA_HOME", ".local/share");
        makeFolders(folder);
        return widenText(folder);
    }
    [[nodiscard]] std::u16string hostExecutable() const override { return executablePath(); }
    [[nodiscard]] bool exists(const std::u16string& path) const override { return pathExists(path); }
    [[nodiscard]] bool isDirectory(const std::u16string& path) const override { return pathIsDirectory(path); }
    void makeDirectory(const std::u16string& path) const override { makeOneDirectory(path); }
    [[nodiscard]] std::unique_ptr<FileReader> openFile(const std::u16string& path) const override {
        return openFileReader(path);
    }
    [[nodiscard]] std::unique_ptr<XmlReader> openXml(const std::u16string& path) const override {
        return openXmlReader(path);
    }
    bool appendLine(const std::u16string& path, std::string_view line) const override {
        return appendLineToFile(path, line);
    }

    void showError(const std::u16string& message) const override { printError(message); }
    void postQuit() const noexcept override {} // there is no message loop to end
    [[nodiscard]] int postToHost(std::uint64_t window, const HostMessage& message) const noexcept override {
        return postDatagram(window, message);
    }

    [[nodiscard]] std::string narrow(std::u16string_view text, std::size_t maxBytes) const override {
        return narrowText(text, maxBytes);
    }
    [[nodiscard]] std::u16string widen(std::string_view text) const override { return widenText(text); }
};

constinit PosixPlatform thePlatform;

} // namespace
} // namespace posix

Platform& hostPlatform() noexcept {
    return posix::thePlatform;
}

} // namespace tallowmere::platform

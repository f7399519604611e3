// The operating system in memory, for tests: nothing real is touched and every step can be made to fail.
//
// One MemoryMachine is one computer: its clock, files, settings and sections. Each MemoryPlatform is one
// process on it. Sections live as the real ones do: while any SharedSection object of them lives.
#pragma once

#include "platform/host_window.hpp"
#include "platform/platform.hpp"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallowmere::test {

/// Every call that the library can make on a platform and that can fail, by name.
enum class Step {
    TimeZone,
    CreateSection,
    MapSection,
    OpenSettings,
    CreateSettings,
    DescribeValue,
    ReadValue,
    WriteValue,
    ProgramDataFolder,
    HostExecutable,
    Exists,
    IsDirectory,
    MakeDirectory,
    OpenFile,
    ReadFile,
    OpenXml,
    NextElement,
    AppendLine,
    ShowError,
    PostQuit,
    PostToHost,
    Narrow,
    Widen,
};

struct MemoryValue {
    platform::SettingsType type;
    std::string bytes;
};

class MemoryMachine {
  public:
    MemoryMachine();
    ~MemoryMachine();
    MemoryMachine(const MemoryMachine&) = delete;
    MemoryMachine& operator=(const MemoryMachine&) = delete;

    // What the machine holds; set and look at it freely.
    std::int64_t now = 134'082'432'000'000'000; // 2025-11-22 00:00:00 UTC
    std::int64_t tick = 0;                      // added to `now` by each reading of the clock
    std::optional<platform::TimeZone> zone = platform::TimeZone{};
    char16_t separator = u'\\';
    bool caseSensitive = false;
    std::u16string programData = u"C:\\ProgramData"; // exists as a folder
    std::u16string hostExecutable = u"C:\\Programs\\Nav\\nav.exe";
    std::map<std::u16string, std::optional<std::string>> files;               // path to bytes; no bytes: a folder
    std::map<std::u16string, std::map<std::u16string, MemoryValue>> settings; // key path to its values

    // What happened, in order.
    std::vector<std::u16string> errorsShown;
    int quitsPosted = 0;
    std::vector<std::pair<std::uint64_t, platform::HostMessage>> posts;
    int postResult = 1;
    bool anyWindowExists = true;           // posting to a handle that no makeWindow gave succeeds too
    std::vector<unsigned> sleeps;          // milliseconds
    std::vector<std::string> trace;        // each step that was asked for, by name
    std::function<void(unsigned)> onSleep; // called by each sleep

    void addString(const std::u16string& key, const std::u16string& name, std::u16string_view text,
                   int terminators = 1);
    void addDword(const std::u16string& key, const std::u16string& name, std::uint32_t value);
    void addDouble(const std::u16string& key, const std::u16string& name, double value); // REG_BINARY, 8 bytes
    void addBytes(const std::u16string& key, const std::u16string& name, platform::SettingsType type,
                  std::string bytes);
    void addFile(const std::u16string& path, std::string bytes); // and the folders above it

    /// The n-th request of this step from now on fails (1: the next one); all later ones work again.
    void failOnce(Step step, int nth = 1);
    /// Every request of this step fails from now on.
    void failAlways(Step step);
    /// The n-th request of any step from now on fails.
    void failAnyOnce(int nth);
    /// All requests succeed from now on.
    void failNever();
    /// How many requests of all steps there were since the last failAnyOnce.
    [[nodiscard]] int requests() const;

    /// The bytes of a living section, or null.
    [[nodiscard]] std::byte* section(const std::u16string& name) const;
    /// Makes the section be there with these many bytes, as if another process had made it, until reset.
    [[nodiscard]] std::shared_ptr<void> holdSection(const std::u16string& name, std::size_t bytes);

    /// A message that was posted to this window and not yet taken.
    [[nodiscard]] std::unique_ptr<platform::HostWindow> makeWindow();

  private:
    friend class MemoryPlatform;
    struct State;
    std::unique_ptr<State> state_;
};

class MemoryPlatform final : public platform::Platform {
  public:
    explicit MemoryPlatform(MemoryMachine& machine) : machine_(machine) {}

    [[nodiscard]] std::int64_t now() const noexcept override;
    [[nodiscard]] std::optional<platform::TimeZone> timeZone() const noexcept override;
    void sleepMilliseconds(unsigned milliseconds) const noexcept override;
    [[nodiscard]] std::unique_ptr<platform::SharedSection> openOrCreateSection(const std::u16string& name,
                                                                               std::size_t bytes) const override;
    [[nodiscard]] std::unique_ptr<platform::SharedSection> openSection(const std::u16string& name,
                                                                       std::size_t bytes) const override;
    [[nodiscard]] std::unique_ptr<platform::SectionLook> lookAtSection(const std::u16string& name,
                                                                       std::size_t bytes) const override;
    [[nodiscard]] std::unique_ptr<platform::SettingsKey> openSettings(const std::u16string& path) const override;
    [[nodiscard]] std::unique_ptr<platform::SettingsKey> createSettings(const std::u16string& path) const override;
    [[nodiscard]] char16_t separator() const noexcept override { return machine_.separator; }
    [[nodiscard]] bool caseSensitivePaths() const noexcept override { return machine_.caseSensitive; }
    [[nodiscard]] std::u16string programDataFolder() const override;
    [[nodiscard]] std::u16string hostExecutable() const override;
    [[nodiscard]] bool exists(const std::u16string& path) const override;
    [[nodiscard]] bool isDirectory(const std::u16string& path) const override;
    void makeDirectory(const std::u16string& path) const override;
    [[nodiscard]] std::unique_ptr<platform::FileReader> openFile(const std::u16string& path) const override;
    [[nodiscard]] std::unique_ptr<platform::XmlReader> openXml(const std::u16string& path) const override;
    bool appendLine(const std::u16string& path, std::string_view line) const override;
    void showError(const std::u16string& message) const override;
    void postQuit() const noexcept override;
    [[nodiscard]] int postToHost(std::uint64_t window, const platform::HostMessage& message) const noexcept override;
    [[nodiscard]] std::string narrow(std::u16string_view text, std::size_t maxBytes) const override;
    [[nodiscard]] std::u16string widen(std::string_view text) const override;

  private:
    MemoryMachine& machine_;
};

} // namespace tallowmere::test

// The operating system as a fuzz target wants it: everything in memory, the same in every run, nothing kept.
//
// Leaner than the platform of the tests, which records each call: a target makes tens of thousands of runs a
// second. Text, registry files and XML go through the Linux platform's own code, which is under test too.
#pragma once

#include "platform/platform.hpp"
#include "platform/posix/registry_document.hpp"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace tallowmere::fuzz {

class FuzzPlatform final : public platform::Platform {
  public:
    // What the machine holds; set it freely.
    std::byte* section = nullptr; // the bytes of the one section, owned by the target
    bool sectionExists = true;
    mutable std::int64_t time = 134'082'432'000'000'000; // 2025-11-22 00:00:00 UTC
    std::int64_t tick = 0;                               // added to `time` by each reading of the clock
    std::string file;                                    // the bytes of every file that is opened
    bool filesExist = false;
    std::string document; // path of the file that stands for every XML document; empty: there is none
    std::map<std::u16string, platform::posix::RegistryValues> settings; // by folded path
    int postResult = 1;

    [[nodiscard]] std::int64_t now() const noexcept override;
    [[nodiscard]] std::optional<platform::TimeZone> timeZone() const noexcept override;
    void sleepMilliseconds(unsigned) const noexcept override {}
    [[nodiscard]] std::unique_ptr<platform::SharedSection> openOrCreateSection(const std::u16string& name,
                                                                               std::size_t bytes) const override;
    [[nodiscard]] std::unique_ptr<platform::SharedSection> openSection(const std::u16string& name,
                                                                       std::size_t bytes) const override;
    [[nodiscard]] std::unique_ptr<platform::SectionLook> lookAtSection(const std::u16string&,
                                                                       std::size_t) const override {
        return nullptr;
    }
    [[nodiscard]] std::unique_ptr<platform::SettingsKey> openSettings(const std::u16string& path) const override;
    [[nodiscard]] std::unique_ptr<platform::SettingsKey> createSettings(const std::u16string& path) const override;
    [[nodiscard]] char16_t separator() const noexcept override { return u'/'; }
    [[nodiscard]] bool caseSensitivePaths() const noexcept override { return true; }
    [[nodiscard]] std::u16string programDataFolder() const override { return u"/data"; }
    [[nodiscard]] std::u16string hostExecutable() const override { return u"/programs/nav/nav"; }
    [[nodiscard]] bool exists(const std::u16string&) const override { return true; }
    [[nodiscard]] bool isDirectory(const std::u16string&) const override { return true; }
    void makeDirectory(const std::u16string&) const override {}
    [[nodiscard]] std::unique_ptr<platform::FileReader> openFile(const std::u16string& path) const override;
    [[nodiscard]] std::unique_ptr<platform::XmlReader> openXml(const std::u16string& path) const override;
    bool appendLine(const std::u16string&, std::string_view) const override { return true; }
    void showError(const std::u16string&) const override {}
    void postQuit() const noexcept override {}
    [[nodiscard]] int postToHost(std::uint64_t window, const platform::HostMessage& message) const noexcept override;
    [[nodiscard]] std::string narrow(std::u16string_view text, std::size_t maxBytes) const override;
    [[nodiscard]] std::u16string widen(std::string_view text) const override;
};

/// Puts the bytes into a file of this process's own, for the XML parser, which reads files; the path of it.
/// Empty when that fails.
[[nodiscard]] const std::string& documentFile(std::string_view bytes);

} // namespace tallowmere::fuzz

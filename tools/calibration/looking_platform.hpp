// An operating system that can be looked at but not changed.
#pragma once

#include "platform/platform.hpp"

#include <set>
#include <string>

namespace tallowmere::tools {

/// Passes on what reads and keeps back what would change something. A folder that was to be made counts as
/// there from then on, so that paths come out as they would if it had been made. One thread at a time.
class LookingPlatform final : public platform::Platform {
  public:
    /// `real` must outlive this object.
    explicit LookingPlatform(const platform::Platform& real) : real_(real) {}

    [[nodiscard]] std::int64_t now() const noexcept override { return real_.now(); }
    [[nodiscard]] std::optional<platform::TimeZone> timeZone() const noexcept override { return real_.timeZone(); }
    void sleepMilliseconds(unsigned milliseconds) const noexcept override { real_.sleepMilliseconds(milliseconds); }
    [[nodiscard]] std::unique_ptr<platform::SharedSection> openOrCreateSection(const std::u16string& name,
                                                                               std::size_t bytes) const override {
        return real_.openSection(name, bytes);
    }
    [[nodiscard]] std::unique_ptr<platform::SharedSection> openSection(const std::u16string& name,
                                                                       std::size_t bytes) const override {
        return real_.openSection(name, bytes);
    }
    [[nodiscard]] std::unique_ptr<platform::SectionLook> lookAtSection(const std::u16string& name,
                                                                       std::size_t bytes) const override {
        return real_.lookAtSection(name, bytes);
    }
    [[nodiscard]] std::unique_ptr<platform::SettingsKey> openSettings(const std::u16string& path) const override {
        return real_.openSettings(path);
    }
    [[nodiscard]] std::unique_ptr<platform::SettingsKey> createSettings(const std::u16string& path) const override {
        return real_.openSettings(path);
    }
    [[nodiscard]] char16_t separator() const noexcept override { return real_.separator(); }
    [[nodiscard]] bool caseSensitivePaths() const noexcept override { return real_.caseSensitivePaths(); }
    [[nodiscard]] std::u16string programDataFolder() const override { return real_.programDataFolder(); }
    [[nodiscard]] std::u16string hostExecutable() const override { return real_.hostExecutable(); }
    [[nodiscard]] bool exists(const std::u16string& path) const override {
        return wanted_.contains(path) || real_.exists(path);
    }
    [[nodiscard]] bool isDirectory(const std::u16string& path) const override {
        return wanted_.contains(path) || real_.isDirectory(path);
    }
    void makeDirectory(const std::u16string& path) const override { wanted_.insert(path); }
    [[nodiscard]] std::unique_ptr<platform::FileReader> openFile(const std::u16string& path) const override {
        return real_.openFile(path);
    }
    [[nodiscard]] std::unique_ptr<platform::XmlReader> openXml(const std::u16string& path) const override {
        return real_.openXml(path);
    }
    bool appendLine(const std::u16string&, std::string_view) const override { return false; }
    void showError(const std::u16string&) const override {}
    void postQuit() const noexcept override {}
    [[nodiscard]] int postToHost(std::uint64_t, const platform::HostMessage&) const noexcept override { return 0; }
    [[nodiscard]] std::string narrow(std::u16string_view text, std::size_t maxBytes) const override {
        return real_.narrow(text, maxBytes);
    }
    [[nodiscard]] std::u16string widen(std::string_view text) const override { return real_.widen(text); }

  private:
    const platform::Platform& real_;
    mutable std::set<std::u16string> wanted_;
};

} // namespace tallowmere::tools

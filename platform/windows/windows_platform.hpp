// The seam's implementation on Windows. It keeps nothing, so one object serves every thread; each noun has
// its own source file.
#pragma once

#include "platform/platform.hpp"

namespace tallowmere::platform {

class WindowsPlatform final : public Platform {
  public:
    constexpr WindowsPlatform() = default;

    // clock.cpp
    [[nodiscard]] std::int64_t now() const noexcept override;
    [[nodiscard]] std::optional<TimeZone> timeZone() const noexcept override;
    void sleepMilliseconds(unsigned milliseconds) const noexcept override;

    // section.cpp
    [[nodiscard]] std::unique_ptr<SharedSection> openOrCreateSection(const std::u16string& name,
                                                                     std::size_t bytes) const override;
    [[nodiscard]] std::unique_ptr<SharedSection> openSection(const std::u16string& name,
                                                             std::size_t bytes) const override;
    [[nodiscard]] std::unique_ptr<SectionLook> lookAtSection(const std::u16string& name,
                                                             std::size_t bytes) const override;

    // settings.cpp
    [[nodiscard]] std::unique_ptr<SettingsKey> openSettings(const std::u16string& path) const override;
    [[nodiscard]] std::unique_ptr<SettingsKey> createSettings(const std::u16string& path) const override;

    // folders.cpp
    [[nodiscard]] char16_t separator() const noexcept override { return u'\\'; }
    [[nodiscard]] bool caseSensitivePaths() const noexcept override { return false; }
    [[nodiscard]] std::u16string programDataFolder() const override;
    [[nodiscard]] std::u16string hostExecutable() const override;
    [[nodiscard]] bool exists(const std::u16string& path) const override;
    [[nodiscard]] bool isDirectory(const std::u16string& path) const override;
    void makeDirectory(const std::u16string& path) const override;

    // files.cpp
    [[nodiscard]] std::unique_ptr<FileReader> openFile(const std::u16string& path) const override;
    bool appendLine(const std::u16string& path, std::string_view line) const override;

    // xml.cpp
    [[nodiscard]] std::unique_ptr<XmlReader> openXml(const std::u16string& path) const override;

    // notices.cpp
    void showError(const std::u16string& message) const override;
    void postQuit() const noexcept override;
    [[nodiscard]] int postToHost(std::uint64_t window, const HostMessage& message) const noexcept override;

    // text.cpp
    [[nodiscard]] std::string narrow(std::u16string_view text, std::size_t maxBytes) const override;
    [[nodiscard]] std::u16string widen(std::string_view text) const override;
};

} // namespace tallowmere::platform

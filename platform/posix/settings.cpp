#include "platform/posix/settings.hpp"

#include "platform/posix/registry_document.hpp"
#include "platform/posix/settings_file.hpp"
#include "platform/posix/text.hpp"

#include <algorithm>

namespace tallowmere::platform::posix {
namespace {

std::optional<RegistryDocument> readDocument(const SettingsFile& file) {
    std::optional<std::string> bytes = file.read();
    if (!bytes) return std::nullopt;
    return RegistryDocument(decodeRegistryFile(std::move(*bytes)));
}

class FileSettingsKey final : public SettingsKey {
  public:
    FileSettingsKey(std::u16string path, RegistryValues values) : path_(std::move(path)), values_(std::move(values)) {}

    [[nodiscard]] std::optional<SettingsInfo> describe(const std::u16string& name) const override {
        const auto found = values_.find(foldName(name));
        if (found == values_.end()) return std::nullopt;
        return SettingsInfo{found->second.type, found->second.bytes.size()};
    }
    [[nodiscard]] std::optional<SettingsInfo> read(const std::u16string& name,
                                                   std::span<std::byte> buffer) const override {
        const auto found = values_.find(foldName(name));
        if (found == values_.end() || found->second.bytes.size() > buffer.size()) return std::nullopt;
        std::ranges::copy(found->second.bytes, buffer.begin());
        return SettingsInfo{found->second.type, found->second.bytes.size()};
    }
    [[nodiscard]] std::vector<std::u16string> names() const override {
        std::vector<std::u16string> names;
        for (const auto& [name, value] : values_) names.push_back(name);
        return names;
    }
    void writeString(const std::u16string& name, const std::u16string& text) override {
        write(name, writeStringLine(name, text));
    }
    void writeDword(const std::u16string& name, std::uint32_t value) override {
        write(name, writeDwordLine(name, value));
    }

  private:
    /// Reads the file again first, so that what others wrote meanwhile stays.
    void write(const std::u16string& name, const std::string& line) {
        const SettingsFile file(true);
        const SettingsFile::WriteLock lock(file);
        if (!lock) return;
        std::optional<RegistryDocument> document = readDocument(file);
        if (!document || !document->setValue(path_, name, line) || !file.replace(document->text())) return;
        values_ = document->values(path_).value_or(RegistryValues{});
    }

    std::u16string path_;
    RegistryValues values_;
};

} // namespace

std::unique_ptr<SettingsKey> openSettingsKey(const std::u16string& path) {
    const std::optional<RegistryDocument> document = readDocument(SettingsFile(false));
    if (!document) return nullptr;
    std::optional<RegistryValues> values = document->values(path);
    if (!values) return nullptr;
    return std::make_unique<FileSettingsKey>(path, std::move(*values));
}

std::unique_ptr<SettingsKey> createSettingsKey(const std::u16string& path) {
    if (std::unique_ptr<SettingsKey> key = openSettingsKey(path)) return key;
    const SettingsFile file(true);
    const SettingsFile::WriteLock lock(file);
    if (!lock) return nullptr;
    std::optional<RegistryDocument> document = readDocument(file);
    if (!document) return nullptr;
    std::optional<RegistryValues> values = document->values(path);
    if (!values && (!document->addKey(path) || !file.replace(document->text()))) return nullptr;
    return std::make_unique<FileSettingsKey>(path, std::move(values).value_or(RegistryValues{}));
}

} // namespace tallowmere::platform::posix

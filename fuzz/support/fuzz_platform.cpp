#include "fuzz/support/fuzz_platform.hpp"

#include "platform/posix/text.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace tallowmere::fuzz {

using namespace platform;

namespace {

class Section final : public SharedSection {
  public:
    Section(std::byte* bytes, bool existed) noexcept : bytes_(bytes), existed_(existed) {}
    [[nodiscard]] std::byte* view() const noexcept override { return bytes_; }
    [[nodiscard]] bool existed() const noexcept override { return existed_; }
    [[nodiscard]] std::u16string maker() const override { return u"skipper"; }

  private:
    std::byte* bytes_;
    bool existed_;
};

/// Reads as the file's key does; what is written goes nowhere.
class Key final : public SettingsKey {
  public:
    explicit Key(const posix::RegistryValues* values) noexcept : values_(values) {}

    [[nodiscard]] std::optional<SettingsInfo> describe(const std::u16string& name) const override {
        const posix::RegistryValue* value = find(name);
        if (value == nullptr) return std::nullopt;
        return SettingsInfo{value->type, value->bytes.size()};
    }
    [[nodiscard]] std::optional<SettingsInfo> read(const std::u16string& name,
                                                   std::span<std::byte> buffer) const override {
        const posix::RegistryValue* value = find(name);
        if (value == nullptr || value->bytes.size() > buffer.size()) return std::nullopt;
        std::ranges::copy(value->bytes, buffer.begin());
        return SettingsInfo{value->type, value->bytes.size()};
    }
    void writeString(const std::u16string&, const std::u16string&) override {}
    void writeDword(const std::u16string&, std::uint32_t) override {}

  private:
    [[nodiscard]] const posix::RegistryValue* find(const std::u16string& name) const {
        if (values_ == nullptr) return nullptr;
        const auto found = values_->find(posix::foldName(name));
        return found == values_->end() ? nullptr : &found->second;
    }
    const posix::RegistryValues* values_;
};

class Reader final : public FileReader {
  public:
    explicit Reader(std::string_view bytes) noexcept : rest_(bytes) {}
    [[nodiscard]] std::size_t read(std::span<char> buffer) noexcept override {
        const std::size_t count = std::min(buffer.size(), rest_.size());
        std::copy_n(rest_.data(), count, buffer.data());
        rest_.remove_prefix(count);
        return count;
    }

  private:
    std::string_view rest_;
};

/// A name of this process's own, removed at its end.
class OwnFile {
  public:
    OwnFile() {
        std::error_code failure;
        const std::filesystem::path folder = std::filesystem::temp_directory_path(failure);
        for (unsigned number = 0; path_.empty() && !failure && number < 100'000; ++number) {
            const std::string path = (folder / ("tallowmere-fuzz-" + std::to_string(number) + ".xml")).string();
            std::FILE* const made = std::fopen(path.c_str(), "wbx");
            if (made == nullptr) continue;
            (void)std::fclose(made);
            path_ = path;
        }
    }
    ~OwnFile() { (void)std::remove(path_.c_str()); }
    OwnFile(const OwnFile&) = delete;
    OwnFile& operator=(const OwnFile&) = delete;
    [[nodiscard]] const std::string& path() const noexcept { return path_; }

  private:
    std::string path_;
};

} // namespace

std::int64_t FuzzPlatform::now() const noexcept {
    time += tick;
    return time;
}

std::optional<TimeZone> FuzzPlatform::timeZone() const noexcept {
    return TimeZone{};
}

std::unique_ptr<SharedSection> FuzzPlatform::openOrCreateSection(const std::u16string&, std::size_t) const {
    return std::make_unique<Section>(section, sectionExists);
}

std::unique_ptr<SharedSection> FuzzPlatform::openSection(const std::u16string&, std::size_t) const {
    return std::make_unique<Section>(section, true);
}

std::unique_ptr<SettingsKey> FuzzPlatform::openSettings(const std::u16string& path) const {
    const auto found = settings.find(posix::foldPath(path));
    return found == settings.end() ? nullptr : std::make_unique<Key>(&found->second);
}

std::unique_ptr<SettingsKey> FuzzPlatform::createSettings(const std::u16string& path) const {
    const auto found = settings.find(posix::foldPath(path));
    return std::make_unique<Key>(found == settings.end() ? nullptr : &found->second);
}

std::unique_ptr<FileReader> FuzzPlatform::openFile(const std::u16string&) const {
    return filesExist ? std::make_unique<Reader>(file) : nullptr;
}

std::unique_ptr<XmlReader> FuzzPlatform::openXml(const std::u16string&) const {
    return document.empty() ? nullptr : hostPlatform().openXml(posix::widenText(document));
}

int FuzzPlatform::postToHost(std::uint64_t, const HostMessage&) const noexcept {
    return postResult;
}

std::string FuzzPlatform::narrow(std::u16string_view text, std::size_t maxBytes) const {
    return posix::narrowText(text, maxBytes);
}

std::u16string FuzzPlatform::widen(std::string_view text) const {
    return posix::widenText(text);
}

const std::string& documentFile(std::string_view bytes) {
    static const OwnFile file;
    static const std::string none;
    std::FILE* const out = std::fopen(file.path().c_str(), "wb");
    if (out == nullptr) return none;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), out) == bytes.size();
    return std::fclose(out) == 0 && written ? file.path() : none;
}

} // namespace tallowmere::fuzz

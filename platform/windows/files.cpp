#include "platform/windows/regular_file.hpp"
#include "platform/windows/windows_platform.hpp"

#include <algorithm>
#include <utility>

namespace tallowmere::platform {
namespace {

constexpr std::size_t kLargestRead = 1u << 30;

class DiskFile final : public FileReader {
  public:
    explicit DiskFile(UniqueFile file) noexcept : file_(std::move(file)) {}

    [[nodiscard]] std::size_t read(std::span<char> buffer) noexcept override {
        std::size_t filled = 0;
        while (filled < buffer.size()) {
            const auto wanted = static_cast<DWORD>(std::min(buffer.size() - filled, kLargestRead));
            DWORD got = 0;
            if (!::ReadFile(file_.get(), buffer.data() + filled, wanted, &got, nullptr) || got == 0) break;
            filled += got;
        }
        return filled;
    }

  private:
    UniqueFile file_;
};

/// A line as a file in text mode gets it.
std::string asTextMode(std::string_view line) {
    std::string text;
    text.reserve(line.size() + 2);
    for (const char c : line) {
        if (c == '\n') text += '\r';
        text += c;
    }
    return text += "\r\n";
}

} // namespace

// Neither attributes nor the file type alone tells: a device's name has attributes, a raw disk is a disk.
UniqueFile openRegularFile(const std::u16string& path, DWORD access) {
    UniqueFile file{::CreateFileW(wide(path), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)};
    if (!file || ::GetFileType(file.get()) != FILE_TYPE_DISK) return {};
    BY_HANDLE_FILE_INFORMATION information{};
    if (!::GetFileInformationByHandle(file.get(), &information)) return {};
    if ((information.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) != 0) return {};
    return file;
}

std::unique_ptr<FileReader> WindowsPlatform::openFile(const std::u16string& path) const {
    UniqueFile file = openRegularFile(path, GENERIC_READ);
    return file ? std::make_unique<DiskFile>(std::move(file)) : nullptr;
}

bool WindowsPlatform::appendLine(const std::u16string& path, std::string_view line) const {
    const std::string text = asTextMode(line);
    // With this right alone the system puts each write at the file's end, whoever else writes.
    const UniqueFile file{::CreateFileW(wide(path), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                        OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr)};
    if (!file) return false;
    DWORD written = 0;
    return ::WriteFile(file.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr) != 0;
}

} // namespace tallowmere::platform

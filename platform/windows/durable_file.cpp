#include "platform/durable_file.hpp"

#include "platform/windows/handles.hpp"

#include <algorithm>
#include <utility>

namespace tallowmere::platform {
namespace {

class DiskFile final : public DurableFile {
  public:
    explicit DiskFile(UniqueFile file) noexcept : file_(std::move(file)) {}

    [[nodiscard]] bool write(std::string_view bytes) noexcept override {
        constexpr std::size_t largest = 1U << 30;
        while (!bytes.empty()) {
            DWORD count = 0;
            const auto wanted = static_cast<DWORD>(std::min(bytes.size(), largest));
            if (!::WriteFile(file_.get(), bytes.data(), wanted, &count, nullptr) || count == 0) return false;
            bytes.remove_prefix(count);
        }
        return true;
    }

    [[nodiscard]] bool sync() noexcept override { return ::FlushFileBuffers(file_.get()) != 0; }

  private:
    UniqueFile file_;
};

} // namespace

std::unique_ptr<DurableFile> makeDurableFile(const std::u16string& path) {
    if (path.find(u'\0') != path.npos) return nullptr;
    UniqueFile file{
        ::CreateFileW(wide(path), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr)};
    return file ? std::make_unique<DiskFile>(std::move(file)) : nullptr;
}

} // namespace tallowmere::platform

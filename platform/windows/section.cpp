#include "platform/windows/handles.hpp"
#include "platform/windows/windows_platform.hpp"

#include <aclapi.h>

#include <array>
#include <utility>

namespace tallowmere::platform {
namespace {

constexpr DWORD kReadAndWrite = FILE_MAP_READ | FILE_MAP_WRITE;

/// Name of the account that a security identifier stands for; empty when it can't be told.
std::u16string accountName(PSID account) {
    std::array<wchar_t, 257> name{}; // an account name has at most 256 characters, as has a domain
    std::array<wchar_t, 257> domain{};
    auto nameSize = static_cast<DWORD>(name.size());
    auto domainSize = static_cast<DWORD>(domain.size());
    SID_NAME_USE use{};
    if (!::LookupAccountSidW(nullptr, account, name.data(), &nameSize, domain.data(), &domainSize, &use)) return {};
    return {name.data(), name.data() + nameSize};
}

class MappedSection final : public SharedSection {
  public:
    MappedSection(UniqueSection section, std::size_t bytes, bool existed) noexcept
        : section_(std::move(section)), view_(::MapViewOfFile(section_.get(), kReadAndWrite, 0, 0, bytes)),
          existed_(existed) {}

    [[nodiscard]] std::byte* view() const noexcept override { return static_cast<std::byte*>(view_.get()); }
    [[nodiscard]] bool existed() const noexcept override { return existed_; }

    [[nodiscard]] std::u16string maker() const override {
        PSID owner = nullptr; // points into the descriptor
        UniqueLocalMemory<void> descriptor;
        if (::GetSecurityInfo(section_.get(), SE_KERNEL_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr, nullptr,
                              nullptr, descriptor.receive()) != ERROR_SUCCESS)
            return {};
        return owner != nullptr ? accountName(owner) : std::u16string{};
    }

  private:
    UniqueSection section_;
    UniqueView view_; // unmapped before the section is let go
    bool existed_;
};

} // namespace

std::unique_ptr<SharedSection> WindowsPlatform::openOrCreateSection(const std::u16string& name,
                                                                    std::size_t bytes) const {
    const std::uint64_t size = bytes;
    UniqueSection section{::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE,
                                               static_cast<DWORD>(size >> 32), static_cast<DWORD>(size & 0xFFFFFFFF),
                                               wide(name))};
    const bool existed = ::GetLastError() == ERROR_ALREADY_EXISTS;
    if (!section) return nullptr;
    return std::make_unique<MappedSection>(std::move(section), bytes, existed);
}

std::unique_ptr<SharedSection> WindowsPlatform::openSection(const std::u16string& name, std::size_t bytes) const {
    // The right to read the security information tells the maker.
    UniqueSection section{::OpenFileMappingW(kReadAndWrite | READ_CONTROL, FALSE, wide(name))};
    if (!section) return nullptr;
    auto opened = std::make_unique<MappedSection>(std::move(section), bytes, true);
    if (opened->view() == nullptr) return nullptr;
    return opened;
}

} // namespace tallowmere::platform

#include "platform/windows/handles.hpp"
#include "platform/windows/windows_platform.hpp"

#include <aclapi.h>
#include <winternl.h>

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

/// The account that owns an object. The handle needs the right to read its security information.
std::u16string ownerName(HANDLE object) {
    PSID owner = nullptr; // points into the descriptor
    UniqueLocalMemory<void> descriptor;
    if (::GetSecurityInfo(object, SE_KERNEL_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr, nullptr, nullptr,
                          descriptor.receive()) != ERROR_SUCCESS)
        return {};
    return owner != nullptr ? accountName(owner) : std::u16string{};
}

std::size_t inWholePages(std::size_t bytes) noexcept {
    SYSTEM_INFO system{};
    ::GetSystemInfo(&system);
    return (bytes + system.dwPageSize - 1) / system.dwPageSize * system.dwPageSize;
}

/// Bytes of a view, from its start, that have memory behind them, a multiple of the page size: all, unless somebody
/// made the section with room only (SEC_RESERVE). Who touches the rest ends.
std::size_t usableBytes(const void* view) noexcept {
    MEMORY_BASIC_INFORMATION region{};
    const bool isUsable = ::VirtualQuery(view, &region, sizeof region) == sizeof region && region.State == MEM_COMMIT;
    return isUsable ? region.RegionSize : 0;
}

/// Maps the front of a section. Nothing when it is smaller, or not all of it can be used.
UniqueView mapFront(const UniqueSection& section, std::size_t bytes) noexcept {
    UniqueView view{::MapViewOfFile(section.get(), kReadAndWrite, 0, 0, bytes)};
    if (view && usableBytes(view.get()) < inWholePages(bytes)) view.reset();
    return view;
}

class MappedSection final : public SharedSection {
  public:
    MappedSection(UniqueSection section, std::size_t bytes, bool existed) noexcept
        : section_(std::move(section)), view_(mapFront(section_, bytes)), existed_(existed) {}

    [[nodiscard]] std::byte* view() const noexcept override { return static_cast<std::byte*>(view_.get()); }
    [[nodiscard]] bool existed() const noexcept override { return existed_; }

    [[nodiscard]] std::u16string maker() const override { return ownerName(section_.get()); }

  private:
    UniqueSection section_;
    UniqueView view_; // unmapped before the section is let go
    bool existed_;
};

/// Handles to the object that a handle is to, in all processes; 0 when it can't be told. By name, because the
/// system's own library has no import library everywhere; it is in every process.
unsigned long handlesTo(HANDLE object) noexcept {
    using Query = NTSTATUS(NTAPI*)(HANDLE, OBJECT_INFORMATION_CLASS, void*, ULONG, ULONG*);
    const HMODULE system = ::GetModuleHandleW(L"ntdll.dll");
    if (system == nullptr) return 0;
    const auto query = reinterpret_cast<Query>(reinterpret_cast<void*>(::GetProcAddress(system, "NtQueryObject")));
    PUBLIC_OBJECT_BASIC_INFORMATION information{};
    if (query == nullptr || query(object, ObjectBasicInformation, &information, sizeof information, nullptr) < 0)
        return 0;
    return information.HandleCount;
}

/// Opens a section that somebody besides this call has a handle to. Owners keep theirs; who looks has one for
/// moments only, so that two who ask at the same time may take each other for an owner until they ask again.
UniqueSection openOwned(const std::u16string& name) noexcept {
    UniqueSection section{::OpenFileMappingW(FILE_MAP_READ | READ_CONTROL, FALSE, wide(name))};
    if (section && handlesTo(section.get()) == 1) section.reset();
    return section;
}

/// Maps all of a section. Nothing when it is of another size, or not all of it can be used.
UniqueView mapWhole(const UniqueSection& section, std::size_t bytes) noexcept {
    UniqueView view{::MapViewOfFile(section.get(), FILE_MAP_READ, 0, 0, 0)};
    if (view && usableBytes(view.get()) != inWholePages(bytes)) view.reset();
    return view;
}

/// True when two mappings differ in a place that stands still, so that they can't be of one memory. A section
/// and its successor do: each has the clock of its last write. A place that is written while it is compared
/// is looked at again.
bool differ(const void* one, const void* other, std::size_t bytes) noexcept {
    constexpr int kLooks = 3;
    const auto* a = static_cast<const volatile std::uint64_t*>(one);
    const auto* b = static_cast<const volatile std::uint64_t*>(other);
    for (std::size_t i = 0; i < bytes / sizeof *a; ++i) {
        int looks = 0;
        for (; looks < kLooks; ++looks) {
            const std::uint64_t before = a[i];
            const std::uint64_t there = b[i];
            if (before == there || a[i] != before) break;
        }
        if (looks == kLooks) return true;
    }
    return false;
}

/// Keeps the mapping and no handle. The name is gone with the last handle, whatever is mapped.
class MappedSectionLook final : public SectionLook {
  public:
    MappedSectionLook(UniqueView view, std::size_t bytes, const std::u16string& name)
        : view_(std::move(view)), bytes_(bytes), name_(name) {}

    [[nodiscard]] const std::byte* view() const noexcept override { return static_cast<const std::byte*>(view_.get()); }

    [[nodiscard]] bool isOwned() const noexcept override {
        const UniqueSection section = openOwned(name_);
        if (!section) return false;
        const UniqueView now = mapWhole(section, bytes_);
        return now && !differ(view_.get(), now.get(), bytes_);
    }

    [[nodiscard]] std::u16string maker() const override {
        const UniqueSection section = openOwned(name_);
        return section ? ownerName(section.get()) : std::u16string{};
    }

  private:
    UniqueView view_;
    std::size_t bytes_;
    std::u16string name_;
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

std::unique_ptr<SectionLook> WindowsPlatform::lookAtSection(const std::u16string& name, std::size_t bytes) const {
    const UniqueSection section = openOwned(name);
    if (!section) return nullptr;
    UniqueView view = mapWhole(section, bytes);
    if (!view) return nullptr;
    return std::make_unique<MappedSectionLook>(std::move(view), bytes, name);
}

} // namespace tallowmere::platform

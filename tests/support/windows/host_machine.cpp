#include "tests/support/host_machine.hpp"

#include "core/channels/section_name.hpp"
#include "core/channels/shared_area.hpp"
#include "platform/platform.hpp"
#include "settings/reg_ex.hpp"

#include <windows.h>

#include <stdexcept>
#include <vector>

namespace tallowmere::test {

namespace fs = std::filesystem;

namespace {

constexpr wchar_t kOwnRoot[] = L"Software\\TallowmereHostMachineOfTests";

const wchar_t* wide(const std::u16string& text) {
    return reinterpret_cast<const wchar_t*>(text.c_str());
}

} // namespace

/// For this process a key of the tests' own takes the place of the user's root, so their settings are never touched.
struct HostMachine::State {
    State() {
        ::RegDeleteTreeW(HKEY_CURRENT_USER, kOwnRoot);
        if (::RegCreateKeyExW(HKEY_CURRENT_USER, kOwnRoot, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &root, nullptr) !=
                0 ||
            ::RegOverridePredefKey(HKEY_CURRENT_USER, root) != 0)
            throw std::runtime_error("the user's settings cannot be put out of sight");
        folder = fs::temp_directory_path() / ("tallowmere-" + std::to_string(::GetCurrentProcessId())) / "Race";
    }
    ~State() {
        ::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        ::RegCloseKey(root);
        ::RegDeleteTreeW(HKEY_CURRENT_USER, kOwnRoot);
        std::error_code ignored;
        fs::remove_all(folder.parent_path(), ignored);
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    HKEY root = nullptr;
    fs::path folder;
};

HostMachine::HostMachine() : state_(std::make_unique<State>()) {
    for (const char* name : {"config", "calibration"}) fs::create_directories(folder() / name);
    setFolder();
}
HostMachine::~HostMachine() = default;

fs::path HostMachine::folder() const {
    return state_->folder;
}

bool HostMachine::holdsSection() const {
    return platform::hostPlatform().openSection(sectionName(), sizeof(SharedArea)) != nullptr;
}

void HostMachine::clearSettings() {
    ::RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Tallowmere");
}

void HostMachine::setFolder() {
    set(kCoreKey, u"DataFolder", REG_SZ, storedText(folder().u16string()));
}

void HostMachine::set(const std::u16string& path, const std::u16string& name, std::uint32_t type,
                      const std::string& bytes) {
    HKEY key = nullptr;
    ::RegCreateKeyExW(HKEY_CURRENT_USER, wide(path), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
    // The system adds a terminator to a text when the one character behind it is one: none is, here.
    const std::string guarded = bytes + "\xFF\xFF";
    ::RegSetValueExW(key, wide(name), 0, type, reinterpret_cast<const BYTE*>(guarded.data()),
                     static_cast<DWORD>(bytes.size()));
    DWORD kept = 0;
    auto size = static_cast<DWORD>(guarded.size());
    std::vector<BYTE> stored(guarded.size());
    const LSTATUS read = ::RegQueryValueExW(key, wide(name), nullptr, &kept, stored.data(), &size);
    ::RegCloseKey(key);
    if (read != ERROR_SUCCESS || kept != type || std::string(stored.begin(), stored.begin() + size) != bytes)
        throw std::runtime_error("the registry did not keep a value as given");
}

constexpr std::size_t kPage = 4096;

GuardedMemory::GuardedMemory(std::size_t bytes) : size_((bytes + kPage - 1) / kPage * kPage) {
    begin_ = static_cast<char*>(::VirtualAlloc(nullptr, size_ + kPage, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    DWORD before = 0;
    if (begin_ == nullptr || !::VirtualProtect(begin_ + size_, kPage, PAGE_NOACCESS, &before))
        throw std::runtime_error("VirtualAlloc");
}
GuardedMemory::~GuardedMemory() {
    ::VirtualFree(begin_, 0, MEM_RELEASE);
}

} // namespace tallowmere::test

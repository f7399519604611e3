#include "tests/support/host_machine.hpp"

#include "settings/reg_ex.hpp"
#include "tests/contract/posix_children.hpp"
#include "tests/contract/posix_surroundings.hpp"

#include <array>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <sys/mman.h>

namespace tallowmere::test {

namespace fs = std::filesystem;

struct HostMachine::State {
    PosixSurroundings surroundings;
};

HostMachine::HostMachine() : state_(std::make_unique<State>()) {
    for (const char* name : {"config", "calibration"}) fs::create_directories(folder() / name);
    clearSettings();
    setFolder();
}
HostMachine::~HostMachine() = default;

fs::path HostMachine::folder() const {
    return state_->surroundings.data() / "Race";
}

bool HostMachine::holdsSection() const {
    return mappingsBelow(state_->surroundings.runtime()) != 0;
}

void HostMachine::clearSettings() {
    state_->surroundings.writeSettings("Windows Registry Editor Version 5.00\r\n");
}

void HostMachine::setFolder() {
    set(kCoreKey, u"DataFolder", 1, storedText(folder().u16string()));
}

void HostMachine::set(const std::u16string& key, const std::u16string& name, std::uint32_t type,
                      const std::string& bytes) {
    std::array<char, 24> part{};
    std::snprintf(part.data(), part.size(), "\"=hex(%x):", type);
    std::string text =
        "[HKEY_CURRENT_USER\\" + fs::path(key).string() + "]\r\n\"" + fs::path(name).string() + part.data();
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::snprintf(part.data(), part.size(), i == 0 ? "%02x" : ",%02x",
                      static_cast<unsigned>(static_cast<unsigned char>(bytes[i])));
        text += part.data();
    }
    // A key may come in several pieces.
    std::ofstream(state_->surroundings.settingsFile(), std::ios::binary | std::ios::app) << text << "\r\n";
}

constexpr std::size_t kPage = 4096;

GuardedMemory::GuardedMemory(std::size_t bytes) : size_((bytes + kPage - 1) / kPage * kPage) {
    void* const memory = ::mmap(nullptr, size_ + kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) throw std::runtime_error("mmap");
    begin_ = static_cast<char*>(memory);
    if (::mprotect(begin_ + size_, kPage, PROT_NONE) != 0) throw std::runtime_error("mprotect");
}
GuardedMemory::~GuardedMemory() {
    ::munmap(begin_, size_ + kPage);
}

} // namespace tallowmere::test

#include "fuzz/support/posix_section_file.hpp"

#include "platform/posix/section.hpp"
#include "tests/channels/raw_section.hpp"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tallowmere::fuzz {
namespace {

using test::kSectionBytes;

constexpr const char* kName = "ZanCore_363_253336";
constexpr const char* kAside = "aside"; // the file itself while its name stands for something else

constinit const std::byte* mappedForReading = nullptr;

void must(bool done) noexcept {
    if (!done) std::abort();
}

} // namespace

SectionFile::SectionFile() : folder_((std::filesystem::temp_directory_path() / "tallowmere-fuzz-XXXXXX").string()) {
    must(::mkdtemp(folder_.data()) != nullptr && ::setenv("XDG_RUNTIME_DIR", folder_.c_str(), 1) == 0);
    replace(kSectionBytes);
}

SectionFile::~SectionFile() {
    clear();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

void SectionFile::clear() {
    setEntry(Entry::Nothing);
    ::unlink(pathOf(kAside).c_str());
    if (!bytes_.empty()) ::munmap(bytes_.data(), bytes_.size());
    bytes_ = {};
    if (file_ >= 0) ::close(file_);
}

void SectionFile::replace(std::size_t size) {
    clear();
    file_ = ::open(pathOf(kName).c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    must(file_ >= 0 && ::ftruncate(file_, static_cast<off_t>(size)) == 0);
    size_ = size;
    mode_ = S_IRUSR | S_IWUSR;
    entry_ = Entry::File;
    if (const std::size_t mapped = std::min(size, kSectionBytes); mapped != 0) {
        void* const at = ::mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_SHARED, file_, 0);
        must(at != MAP_FAILED);
        bytes_ = {static_cast<std::byte*>(at), mapped};
    }
    hold_ = Hold::None;
    setHold(Hold::InUse);
}

void SectionFile::setEntry(Entry entry) {
    if (entry == entry_) return;
    const std::string name = pathOf(kName);
    const std::string aside = pathOf(kAside);
    if (entry_ == Entry::File) {
        must(::rename(name.c_str(), aside.c_str()) == 0);
    } else if (entry_ == Entry::Folder) {
        must(::rmdir(name.c_str()) == 0);
    } else if (entry_ != Entry::Nothing) {
        must(::unlink(name.c_str()) == 0);
    }
    entry_ = entry;
    switch (entry) {
    case Entry::File:
        return must(::rename(aside.c_str(), name.c_str()) == 0);
    case Entry::Folder:
        return must(::mkdir(name.c_str(), S_IRWXU) == 0);
    case Entry::Pipe:
        return must(::mkfifo(name.c_str(), S_IRUSR | S_IWUSR) == 0);
    case Entry::Link:
        return must(::symlink(kAside, name.c_str()) == 0);
    case Entry::Twice:
        return must(::link(aside.c_str(), name.c_str()) == 0);
    default:
        return;
    }
}

void SectionFile::setHold(Hold hold) {
    struct flock lock {};
    lock.l_type = hold == Hold::None ? F_UNLCK : hold == Hold::InUse ? F_RDLCK : F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = platform::posix::kLifeByte;
    lock.l_len = 1;
    must(::fcntl(file_, F_OFD_SETLK, &lock) == 0); // who looks holds nothing
    hold_ = hold;
}

void SectionFile::setMode(unsigned mode) {
    must(::fchmod(file_, mode) == 0);
    mode_ = mode;
}

void SectionFile::cut(std::size_t size) {
    if (size >= size_) return;
    if (!bytes_.empty()) ::munmap(bytes_.data(), bytes_.size());
    bytes_ = {};
    must(::ftruncate(file_, static_cast<off_t>(size)) == 0);
    size_ = size;
}

bool SectionFile::isHeld() const noexcept {
    return hold_ == Hold::InUse && size_ == kSectionBytes && (mode_ & 0077U) == 0 && entry_ != Entry::Twice;
}

const std::byte* lastMappedForReading() noexcept {
    return mappedForReading;
}

} // namespace tallowmere::fuzz

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's own names
extern "C" void* __real_mmap(void* at, std::size_t size, int access, int flags, int file, off_t start);
extern "C" void* __wrap_mmap(void* at, std::size_t size, int access, int flags, int file, off_t start);
extern "C" void* __wrap_mmap(void* at, std::size_t size, int access, int flags, int file, off_t start) {
    void* const mapped = __real_mmap(at, size, access, flags, file, start);
    if (access == PROT_READ && size == tallowmere::test::kSectionBytes && mapped != MAP_FAILED)
        tallowmere::fuzz::mappedForReading = static_cast<const std::byte*>(mapped);
    return mapped;
}
// NOLINTEND(bugprone-reserved-identifier)

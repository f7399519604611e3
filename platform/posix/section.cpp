// How a file lives like a section.
//
// Everybody who has the section open holds the life byte, a byte-range lock far beyond the data, through
// the open file description: shared, for as long as the descriptor is open. The kernel lets go of it with
// the last descriptor, however the process ended, so a life byte that nobody holds means that the file is
// a remnant, whatever it contains. A forked child shares its parent's hold and keeps it.
//
// Who finds the life byte free takes it exclusively. A remnant with anything in it, with rights for others or with a
// second name is removed, and the next try finds or makes an empty file: so every section is a file of its own, and who
// still looks at a remnant keeps its bytes. The empty file is made as large as it has to be, and the hold turned into a
// shared one. Nobody gets in meanwhile. A maker that is killed leaves a remnant like any other; one that is stopped
// holds the others up for no longer than kPatience tries.
//
// Who only looks holds nothing: the file is opened for reading, mapped when somebody else holds the life byte,
// and asked for that again when the looker wants to know. Nothing here makes a file shorter that a process may
// have mapped. Whoever else cuts it (only its owner may) makes readers of the part that is gone get SIGBUS.
#include "platform/posix/section.hpp"

#include "platform/posix/account.hpp"
#include "platform/posix/clock.hpp"
#include "platform/posix/file_write.hpp"
#include "platform/posix/folders.hpp"
#include "platform/posix/runtime_folder.hpp"
#include "platform/posix/text.hpp"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tallowmere::platform::posix {
namespace {

/// Making the section takes a fraction of a millisecond, so who meets a maker asks again soon at first.
constexpr int kSoonTries = 20;
constexpr int kPatience = kSoonTries + 500; // tries
constexpr std::chrono::microseconds pauseAfter(int attempt) noexcept {
    return std::chrono::microseconds(attempt < kSoonTries ? 50 : 1000);
}

constexpr struct flock lifeByte(short type) noexcept {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = kLifeByte;
    lock.l_len = 1;
    return lock;
}

/// Takes, changes or lets go of this description's own hold, at once or not at all.
bool setHold(int file, short type) noexcept {
    struct flock lock = lifeByte(type);
    return ::fcntl(file, F_OFD_SETLK, &lock) == 0;
}

/// The hold of somebody else: F_UNLCK for none, F_RDLCK for a section in use, F_WRLCK for one being made.
/// Empty where the file system has no such locks.
std::optional<short> othersHold(int file) noexcept {
    struct flock lock = lifeByte(F_WRLCK);
    if (::fcntl(file, F_OFD_GETLK, &lock) != 0) return std::nullopt;
    return lock.l_type;
}

std::u16string makerOf(int file) {
    struct stat status {};
    return ::fstat(file, &status) == 0 ? widenText(findAccount(status.st_uid).name) : std::u16string();
}

/// Memory of the program or library itself, where the first of its views lies. At the end of a program its other
/// threads run on, and one may be inside a call with the view in its hands: so where the view was there are pages of
/// zeros then, and the call ends on them. They go with the library when that is unloaded, behind which there are no
/// calls.
constexpr std::size_t kPage = 4096;
alignas(kPage) constinit std::array<std::byte, std::size_t{62} * kPage> place{};
constinit std::atomic<bool> placeTaken = false;

/// Puts a mapping into the place. It is made elsewhere first: one that fails in place may leave a hole, for another
/// thread's memory to land in. The kernel looks whether it can move one before it takes away what is there.
bool moveToPlace(void* mapping, std::size_t bytes) noexcept {
    return ::mremap(mapping, bytes, bytes, MREMAP_MAYMOVE | MREMAP_FIXED, place.data()) != MAP_FAILED;
}

/// False when the view stays where it is.
bool takePlace(void* view, std::size_t bytes) noexcept {
    if (bytes > place.size() || ::sysconf(_SC_PAGESIZE) != kPage || placeTaken.exchange(true)) return false;
    const bool taken = moveToPlace(view, bytes);
    if (!taken) placeTaken = false;
    return taken;
}

/// Gives the place back, for which the view must go at any rate: it would keep the section alive. Where no pages of
/// zeros are to be had, what takes no memory comes there, or at last nothing; a call that still runs then faults.
void leavePlace() noexcept {
    constexpr int kFlags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE;
    void* const zeros = ::mmap(nullptr, place.size(), PROT_READ | PROT_WRITE, kFlags, -1, 0);
    bool left = zeros != MAP_FAILED && moveToPlace(zeros, place.size());
    if (!left) {
        if (zeros != MAP_FAILED) ::munmap(zeros, place.size());
        left = ::mmap(place.data(), place.size(), PROT_NONE, kFlags | MAP_FIXED, -1, 0) != MAP_FAILED;
    }
    if (left)
        placeTaken = false;
    else
        ::munmap(place.data(), place.size());
}

class SectionFile final : public SharedSection {
  public:
    SectionFile(Descriptor file, std::size_t bytes, bool existed, bool map) noexcept
        : file_(std::move(file)), bytes_(bytes), existed_(existed) {
        if (!map) return;
        void* const view = ::mmap(nullptr, bytes_, PROT_READ | PROT_WRITE, MAP_SHARED, file_.get(), 0);
        if (view == MAP_FAILED) return;
        inPlace_ = takePlace(view, bytes_);
        view_ = inPlace_ ? place.data() : static_cast<std::byte*>(view);
    }
    /// Closes without unlocking: a forked child may still live in the section through the same description.
    ~SectionFile() override {
        if (inPlace_)
            leavePlace();
        else if (view_ != nullptr)
            ::munmap(view_, bytes_);
    }
    SectionFile(const SectionFile&) = delete;
    SectionFile& operator=(const SectionFile&) = delete;

    [[nodiscard]] std::byte* view() const noexcept override { return view_; }
    [[nodiscard]] bool existed() const noexcept override { return existed_; }
    [[nodiscard]] std::u16string maker() const override { return makerOf(file_.get()); }

  private:
    Descriptor file_;
    std::byte* view_ = nullptr;
    std::size_t bytes_;
    bool existed_;
    bool inPlace_ = false;
};

/// Where the section's file is.
struct Folder {
    int number;
    const char* entry;
};

/// How a try to get hold of the file went.
enum class Hold {
    None,    // no such file, or not one of ours
    Absent,  // a remnant that nobody holds
    Swept,   // a remnant that was there is gone
    Later,   // being made, or gone from under its name since it was opened
    Empty,   // ours, and to be made
    Exposed, // ours and held, but others have rights to it, or it has a second name
    Made,    // new, by us
    Opened,  // in use by others too
    Misfits, // in use by others too, with another size
};

/// Nobody else has rights to it or another name for it.
bool isOursAlone(const struct stat& file) noexcept {
    return S_ISREG(file.st_mode) && isOwn(file, S_IRWXG | S_IRWXO) && file.st_nlink == 1;
}

bool isNamed(const Folder& folder, const struct stat& file) noexcept {
    struct stat named {};
    return ::fstatat(folder.number, folder.entry, &named, AT_SYMLINK_NOFOLLOW) == 0 && named.st_dev == file.st_dev &&
           named.st_ino == file.st_ino;
}

/// Asked only while holding the life byte, which keeps others from removing the file. Before, they may have: then it
/// is no section any more, whatever other name it still has.
Hold judge(const Folder& folder, int file, std::size_t bytes) noexcept {
    struct stat status {};
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode) || !isOwn(status, 0)) return Hold::None;
    if (!isNamed(folder, status)) return Hold::Later;
    if (!isOursAlone(status)) return Hold::Exposed;
    if (status.st_size == 0) return Hold::Empty;
    return status.st_size == static_cast<off_t>(bytes) ? Hold::Opened : Hold::Misfits;
}

/// Takes the space page by page, where it can't be had at once. A file that is only made longer would have none.
bool fillWithZeros(int file, std::size_t bytes) noexcept {
    constexpr std::array<char, 4096> kZeros{};
    for (std::size_t done = 0; done < bytes;) {
        const std::size_t wanted = std::min(kZeros.size(), bytes - done);
        const ssize_t count = ::pwrite(file, kZeros.data(), wanted, static_cast<off_t>(done));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        done += static_cast<std::size_t>(count);
    }
    return true;
}

/// Space is taken now, so that a full file system is an error here and not a fault at some later access. Not all file
/// systems can take it at once. On older kernels a signal makes that start from nothing again, so a program with a fast
/// timer would never get there; a page is taken, signal or not.
bool allocate(int file, std::size_t bytes) noexcept {
    const WithoutWriteSignals guard;
    if (::fallocate(file, 0, 0, static_cast<off_t>(bytes)) == 0) return true;
    return (errno == EOPNOTSUPP || errno == EINTR) && fillWithZeros(file, bytes);
}

/// Removes a remnant; asked with the life byte held exclusively. Once more it is asked whether the name still means
/// this file, because somebody may have moved it.
Hold sweep(const Folder& folder, int file) noexcept {
    struct stat status {};
    const bool same = ::fstat(file, &status) == 0 && isNamed(folder, status);
    return same && ::unlinkat(folder.number, folder.entry, 0) == 0 ? Hold::Swept : Hold::None;
}

/// Makes the section anew; asked with the life byte held exclusively, which becomes a shared hold. The mode
/// is set because a umask may have kept the user's own rights off a file just made.
Hold make(const Folder& folder, int file, std::size_t bytes) noexcept {
    const Hold judged = judge(folder, file, bytes);
    if (judged == Hold::None || judged == Hold::Later) return judged;
    if (judged != Hold::Empty) return sweep(folder, file);
    const bool made = allocate(file, bytes) && ::fchmod(file, S_IRUSR | S_IWUSR) == 0 && setHold(file, F_RDLCK);
    if (made) return Hold::Made;
    sweep(folder, file); // gives back what it took
    return Hold::None;
}

/// Joins those who hold the section. A file that can't be joined may be a remnant all the same, empty of a maker that
/// was killed at work: whoever is alone with it makes it anew. Several who met over it try again.
Hold join(const Folder& folder, int file, std::size_t bytes, bool mayMake) noexcept {
    if (!setHold(file, F_RDLCK)) return Hold::Later;
    const Hold judged = judge(folder, file, bytes);
    if (judged != Hold::Empty && judged != Hold::Exposed) return judged;
    if (mayMake && setHold(file, F_WRLCK)) return make(folder, file, bytes);
    return judged == Hold::Empty ? Hold::Later : Hold::Exposed;
}

Hold tryHold(const Folder& folder, int file, std::size_t bytes, bool mayMake) noexcept {
    const std::optional<short> others = othersHold(file);
    if (!others) return Hold::None;
    switch (*others) {
    case F_RDLCK:
        return join(folder, file, bytes, mayMake);
    case F_UNLCK:
        if (!mayMake) return Hold::Absent;
        return setHold(file, F_WRLCK) ? make(folder, file, bytes) : Hold::Later;
    default:
        return Hold::Later;
    }
}

/// True when the user's own rights to the file were missing and have been given back: a mask may have kept them off a
/// file whose maker was killed, or somebody have taken them since, and nobody could ever open it again. Not done to a
/// file that has other names. What was looked at is what is changed, by a descriptor that needs no rights: another
/// process of the user may remove the file meanwhile, and a stranger put a link in its place.
bool giveOwnRights(const Folder& folder) noexcept {
    constexpr mode_t kOwnRights = S_IRUSR | S_IWUSR;
    const Descriptor file(::openat(folder.number, folder.entry, O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0) return false;
    if (!S_ISREG(status.st_mode) || !isOwn(status, 0) || status.st_nlink != 1) return false;
    if ((status.st_mode & kOwnRights) == kOwnRights) return false;
    std::array<char, 32> path{}; // fchmod takes no such descriptor
    std::snprintf(path.data(), path.size(), "/proc/self/fd/%d", file.get());
    return ::chmod(path.data(), (status.st_mode & ACCESSPERMS) | kOwnRights) == 0;
}

struct HeldFile {
    Descriptor file;
    Hold hold = Hold::None;
};

HeldFile holdFile(std::u16string_view name, std::size_t bytes, bool mayMake) noexcept {
    const RuntimeFolder runtime;
    const EntryName entry = runtime.entry(name);
    if (!runtime || entry.empty()) return {};
    const Folder folder{runtime.get(), entry.text()};
    const int flags = O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY | (mayMake ? O_CREAT : 0);
    for (int attempt = 0; attempt < kPatience; ++attempt) {
        Descriptor file(::openat(folder.number, folder.entry, flags, S_IRUSR | S_IWUSR));
        if (!file && mayMake && errno == EACCES && giveOwnRights(folder)) continue;
        if (!file) return {};
        const Hold hold = tryHold(folder, file.get(), bytes, mayMake);
        if (hold == Hold::Made || hold == Hold::Opened || hold == Hold::Misfits) return {std::move(file), hold};
        // A child forked by another thread just now would keep the hold; so it is let go, not only closed.
        setHold(file.get(), F_UNLCK);
        if (hold == Hold::Swept) continue;
        // Whoever else has an exposed file may be here for a moment only, to find it so too.
        const bool passes = hold == Hold::Later || (hold == Hold::Exposed && mayMake && attempt < kSoonTries);
        if (!passes) return {};
        sleepFor(pauseAfter(attempt));
    }
    return {};
}

/// A file that somebody else holds, mapped for reading.
class SectionFileLook final : public SectionLook {
  public:
    SectionFileLook(Descriptor file, std::size_t bytes) noexcept : file_(std::move(file)), bytes_(bytes) {
        const void* view = ::mmap(nullptr, bytes_, PROT_READ, MAP_SHARED, file_.get(), 0);
        if (view != MAP_FAILED) view_ = static_cast<const std::byte*>(view);
    }
    ~SectionFileLook() override {
        if (view_ != nullptr) ::munmap(const_cast<std::byte*>(view_), bytes_);
    }
    SectionFileLook(const SectionFileLook&) = delete;
    SectionFileLook& operator=(const SectionFileLook&) = delete;

    [[nodiscard]] const std::byte* view() const noexcept override { return view_; }
    /// A file that has been cut is let go too.
    [[nodiscard]] bool isOwned() const noexcept override {
        struct stat status {};
        return othersHold(file_.get()) == F_RDLCK && ::fstat(file_.get(), &status) == 0 && isOursAlone(status) &&
               status.st_size == static_cast<off_t>(bytes_);
    }
    [[nodiscard]] std::u16string maker() const override { return makerOf(file_.get()); }

  private:
    Descriptor file_;
    std::size_t bytes_;
    const std::byte* view_ = nullptr;
};

} // namespace

std::unique_ptr<SectionLook> lookAtSectionFile(std::u16string_view name, std::size_t bytes) {
    const RuntimeFolder folder;
    const EntryName entry = folder.entry(name);
    if (!folder || entry.empty()) return nullptr;
    Descriptor file(::openat(folder.get(), entry.text(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (!file) return nullptr;
    auto look = std::make_unique<SectionFileLook>(std::move(file), bytes);
    if (look->view() == nullptr || !look->isOwned()) return nullptr;
    return look;
}

std::unique_ptr<SharedSection> openOrCreateSectionFile(std::u16string_view name, std::size_t bytes) {
    HeldFile held = holdFile(name, bytes, true);
    if (!held.file) return nullptr;
    return std::make_unique<SectionFile>(std::move(held.file), bytes, held.hold != Hold::Made,
                                         held.hold != Hold::Misfits);
}

std::unique_ptr<SharedSection> openSectionFile(std::u16string_view name, std::size_t bytes) {
    HeldFile held = holdFile(name, bytes, false);
    if (held.hold != Hold::Opened) return nullptr;
    auto section = std::make_unique<SectionFile>(std::move(held.file), bytes, true, true);
    if (section->view() == nullptr) return nullptr;
    return section;
}

} // namespace tallowmere::platform::posix

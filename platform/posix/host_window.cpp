#include "platform/host_window.hpp"

#include "platform/posix/host_message.hpp"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <string_view>
#include <sys/random.h>
#include <sys/stat.h>

namespace tallowmere::platform {
namespace posix {
namespace {

constexpr int kTries = 8;
constexpr int kForeignDatagrams = 64; // passed over in one poll

const sockaddr* asGeneric(const sockaddr_un& address) noexcept {
    return reinterpret_cast<const sockaddr*>(&address);
}

/// Nobody else can guess it, and no window before had it.
std::uint64_t randomHandle() noexcept {
    std::uint64_t handle = 0;
    return ::getrandom(&handle, sizeof handle, GRND_NONBLOCK) == sizeof handle ? handle : 0;
}

/// The mode is set before there is a name, for what lies in the folder must never be open to others.
bool bindSocket(const Descriptor& socket, const RuntimeFolder& folder, const EntryName& entry) noexcept {
    const sockaddr_un address = hostAddress(folder, entry.text());
    return ::fchmod(socket.get(), S_IRUSR | S_IWUSR) == 0 &&
           ::bind(socket.get(), asGeneric(address), sizeof address) == 0;
}

void removeIfDead(const RuntimeFolder& folder, const char* entry) noexcept {
    const std::string_view name(entry);
    if (!name.starts_with(kHostEntryPrefix) || name.size() > kLongestHostEntry || !isOwnSocket(folder, entry)) return;
    const Descriptor probe = makeDatagramSocket();
    const sockaddr_un address = hostAddress(folder, entry);
    if (!probe || ::connect(probe.get(), asGeneric(address), sizeof address) == 0 || errno != ECONNREFUSED) return;
    ::unlinkat(folder.get(), entry, 0);
}

/// Hosts that were killed leave their sockets behind.
void removeDeadWindows(const RuntimeFolder& folder) noexcept {
    Descriptor list(::openat(folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    DIR* entries = list ? ::fdopendir(list.get()) : nullptr;
    if (entries == nullptr) return;
    static_cast<void>(list.release()); // closed with the entries
    while (const dirent* entry = ::readdir(entries)) removeIfDead(folder, entry->d_name);
    ::closedir(entries);
}

class SocketWindow final : public HostWindow {
  public:
    SocketWindow(RuntimeFolder folder, Descriptor socket, EntryName entry, std::uint64_t handle) noexcept
        : folder_(std::move(folder)), socket_(std::move(socket)), entry_(entry), handle_(handle) {}
    ~SocketWindow() override { ::unlinkat(folder_.get(), entry_.text(), 0); }
    SocketWindow(const SocketWindow&) = delete;
    SocketWindow& operator=(const SocketWindow&) = delete;

    [[nodiscard]] std::uint64_t handle() const noexcept override { return handle_; }

    [[nodiscard]] std::optional<HostMessage> poll() noexcept override {
        for (int i = 0; i < kForeignDatagrams; ++i) {
            HostDatagram datagram;
            const ssize_t size = ::recv(socket_.get(), &datagram, sizeof datagram, MSG_DONTWAIT | MSG_TRUNC);
            if (size < 0) return std::nullopt;
            if (size == sizeof datagram && datagram.magic == HostDatagram::kMagic)
                return HostMessage{datagram.message, datagram.wParam, datagram.lParam};
        }
        return std::nullopt;
    }

  private:
    RuntimeFolder folder_;
    Descriptor socket_;
    EntryName entry_;
    std::uint64_t handle_;
};

} // namespace
} // namespace posix

std::unique_ptr<HostWindow> makeHostWindow() {
    using namespace posix;
    RuntimeFolder folder;
    Descriptor socket = makeDatagramSocket();
    if (!folder || !socket) return nullptr;
    removeDeadWindows(folder);
    for (int i = 0; i < kTries; ++i) {
        const std::uint64_t handle = randomHandle();
        const EntryName entry = hostEntry(folder, handle);
        if (handle == 0 || !bindSocket(socket, folder, entry)) continue;
        return std::make_unique<SocketWindow>(std::move(folder), std::move(socket), entry, handle);
    }
    return nullptr;
}

} // namespace tallowmere::platform

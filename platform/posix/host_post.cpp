#include "platform/posix/host_message.hpp"

#include "platform/posix/folders.hpp"

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <pthread.h>

namespace tallowmere::platform::posix {
namespace {

/// A thread with a cancellation pending ends at its next call of the system, not in the midst of these: it would unwind
/// through functions that let nothing through, and end the program.
class CancelledLater {
  public:
    CancelledLater() noexcept { ::pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before_); }
    ~CancelledLater() { ::pthread_setcancelstate(before_, nullptr); }
    CancelledLater(const CancelledLater&) = delete;
    CancelledLater& operator=(const CancelledLater&) = delete;

  private:
    int before_ = PTHREAD_CANCEL_ENABLE;
};

} // namespace

EntryName hostEntry(const RuntimeFolder& folder, std::uint64_t handle) noexcept {
    std::array<char16_t, kHostEntryPrefix.size() + 16> name{};
    std::ranges::copy(kHostEntryPrefix, name.begin());
    for (std::size_t i = 0; i < 16; ++i)
        name[name.size() - 1 - i] = static_cast<char16_t>(u"0123456789abcdef"[handle >> (4 * i) & 0xF]);
    return folder.entry({name.data(), name.size()});
}

sockaddr_un hostAddress(const RuntimeFolder& folder, const char* entry) noexcept {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof address.sun_path, "/proc/self/fd/%d/%.64s", folder.get(), entry);
    return address;
}

bool isOwnSocket(const RuntimeFolder& folder, const char* entry) noexcept {
    struct stat status {};
    return ::fstatat(folder.get(), entry, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISSOCK(status.st_mode) &&
           isOwn(status, 0);
}

Descriptor makeDatagramSocket() noexcept {
    return Descriptor(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

int postDatagram(std::uint64_t handle, const HostMessage& message) noexcept {
    const CancelledLater whole;
    const RuntimeFolder folder;
    const EntryName entry = hostEntry(folder, handle);
    if (!folder || !isOwnSocket(folder, entry.text())) return 0;
    const Descriptor socket = makeDatagramSocket();
    if (!socket) return 0;
    const sockaddr_un address = hostAddress(folder, entry.text());
    const HostDatagram datagram{HostDatagram::kMagic, message.message, message.wParam, message.lParam};
    const ssize_t sent = ::sendto(socket.get(), &datagram, sizeof datagram, MSG_NOSIGNAL | MSG_DONTWAIT,
                                  reinterpret_cast<const sockaddr*>(&address), sizeof address);
    if (sent < 0 && errno == ECONNREFUSED) ::unlinkat(folder.get(), entry.text(), 0);
    return sent == static_cast<ssize_t>(sizeof datagram) ? 1 : 0;
}

} // namespace tallowmere::platform::posix

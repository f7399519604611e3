// How a message travels to a host window: one datagram to a socket in the runtime folder.
#pragma once

#include "platform/platform.hpp"
#include "platform/posix/runtime_folder.hpp"

#include <array>
#include <optional>
#include <sys/socket.h>
#include <sys/un.h>

namespace tallowmere::platform::posix {

/// The datagram, in the machine's own byte order: it never leaves the machine.
struct HostDatagram {
    static constexpr std::uint32_t kMagic = 0x314D4854; // "THM1"
    std::uint32_t magic = kMagic;
    std::uint32_t message = 0;
    std::uint64_t wParam = 0;
    std::int64_t lParam = 0;
};
static_assert(sizeof(HostDatagram) == 24);

inline constexpr std::string_view kHostEntryPrefix = "tallowmere-host-";

/// The name that a handle's socket has in the runtime folder.
[[nodiscard]] EntryName hostEntry(const RuntimeFolder& folder, std::uint64_t handle) noexcept;

/// Longer names are none of ours.
inline constexpr std::size_t kLongestHostEntry = 64;

/// The address of an entry, by way of the open folder: so it is that folder's, and short enough.
[[nodiscard]] sockaddr_un hostAddress(const RuntimeFolder& folder, const char* entry) noexcept;

/// True when the entry is a socket of this user.
[[nodiscard]] bool isOwnSocket(const RuntimeFolder& folder, const char* entry) noexcept;

/// A datagram socket that never blocks. Empty on failure.
[[nodiscard]] Descriptor makeDatagramSocket() noexcept;

/// Posts to the window of this handle; non-zero on success. Removes the socket of a host that is gone.
[[nodiscard]] int postDatagram(std::uint64_t handle, const HostMessage& message) noexcept;

} // namespace tallowmere::platform::posix

// The receiving end of Platform::postToHost: a window of a host application, for hosts without one of
// their own. Not part of the shared library.
#pragma once

#include "platform/platform.hpp"

#include <memory>
#include <optional>

namespace tallowmere::platform {

/// An invisible window (Windows: message-only; Linux: a datagram socket in the runtime folder, readable
/// by this user alone). Belongs to the thread that made it.
class HostWindow {
  public:
    virtual ~HostWindow() = default;
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    /// What the shared section keeps as the host window handle. Never 0.
    [[nodiscard]] virtual std::uint64_t handle() const noexcept = 0;
    /// The next message that has arrived, or empty. Does not wait.
    [[nodiscard]] virtual std::optional<HostMessage> poll() noexcept = 0;

  protected:
    HostWindow() = default;
};

/// Null when no window can be made (no desktop, no runtime folder).
[[nodiscard]] std::unique_ptr<HostWindow> makeHostWindow();

} // namespace tallowmere::platform

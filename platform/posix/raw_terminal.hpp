// The terminal's way of taking input, changed for a while.
#pragma once

namespace tallowmere::platform::posix {

/// Switches standard input to single keys without echo. False when it is no terminal.
[[nodiscard]] bool takeSingleKeys() noexcept;

/// Undoes that; nothing when it was not done. May be called by a signal handler.
void giveTerminalBack() noexcept;

/// The same at a sudden end, with the cursor and the first screen. May be called by a signal handler.
void leaveScreenSuddenly() noexcept;

} // namespace tallowmere::platform::posix

// What it means that the output could not be written.
#pragma once

#include <cerrno>

namespace tallowmere::tools {

/// The reader of a pipe has gone, which is nobody's fault. error: errno after the write
[[nodiscard]] constexpr bool readerHasGone(int error) noexcept {
    return error == EPIPE || error == EINVAL; // EINVAL: a broken pipe on Windows
}

inline constexpr char kOutputLost[] = "tallowmere: the output could not be written\n";

} // namespace tallowmere::tools

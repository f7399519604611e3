// Floating-point exceptions as a host has them that unmasked them.
#pragma once

#include <functional>
#include <string>

namespace tallowmere::test {

/// Runs `work` with exceptions for invalid operations, divisions by zero and overflows unmasked in this thread. The
/// first one raised is masked again, so that `work` goes on. True when none was raised.
[[nodiscard]] bool raisesNothing(const std::function<void()>& work);

} // namespace tallowmere::test

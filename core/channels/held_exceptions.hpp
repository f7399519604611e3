// Arithmetic on numbers that may be anything, in programs that have floating-point exceptions unmasked.
//
// Sections, files and callers bring any double. Usually an invalid operation, a division by zero or an overflow gives a
// NaN or an infinity and goes on; but a program can let them raise an exception, and the run-time libraries of some
// languages do so from the start. Then another program's NaN must not end it. So numbers that nobody has checked are
// compared by std::isless and its kin, which are the operators for everything but a quiet NaN, of which they are
// false without an exception; and a formula that numbers of no moderate size could lead astray is worked out with
// exceptions held.
#pragma once

#include "platform/floating_point_state.hpp"

#include <cmath>
#include <type_traits>

namespace tallowmere {

/// True for a number whose powers, products and sums in this library's formulas stay far from the largest double.
/// False for NaN.
[[nodiscard]] inline bool isModerate(double value) noexcept {
    return std::isless(std::fabs(value), 1e30);
}

/// Calls `work` while no floating-point exception is raised in this thread; its result. Afterwards all is as it was,
/// the flags too.
template <class Work> auto withExceptionsHeld(const Work& work) noexcept {
    // By way of a pointer that the compiler can't see through: it moves arithmetic over calls of functions that it
    // doesn't know to matter for it.
    using Result = std::invoke_result_t<const Work&>;
    Result (*const volatile call)(const Work&) = [](const Work& held) -> Result { return held(); };
    platform::FloatingPointState state;
    state.hold();
    if constexpr (std::is_void_v<Result>) {
        call(work);
        state.restore();
    } else {
        const Result result = call(work);
        state.restore();
        return result;
    }
}

} // namespace tallowmere

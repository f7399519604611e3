// The floating-point state of the calling thread, as it is when a FloatingPointState is made: `hold` lets no exception
// be raised from then on and forgets those that have come up, `restore` brings all back. Rounding stays as it is.
#pragma once

#if defined(__SSE2__) || defined(_M_X64)
#include <xmmintrin.h>
#else
#include <cfenv>
#endif

namespace tallowmere::platform {

#if defined(__SSE2__) || defined(_M_X64)
// By the register itself: the C library's feholdexcept for Windows leaves its masks as they are.
class FloatingPointState {
  public:
    void hold() noexcept { _mm_setcsr((before_ | kMasks) & ~kFlags); }
    void restore() noexcept { _mm_setcsr(before_); }

  private:
    static constexpr unsigned kMasks = 0x1F80;
    static constexpr unsigned kFlags = 0x3F;
    unsigned before_ = _mm_getcsr();
};
#else
class FloatingPointState {
  public:
    void hold() noexcept { std::feholdexcept(&before_); }
    void restore() noexcept { std::fesetenv(&before_); }

  private:
    std::fenv_t before_{};
};
#endif

} // namespace tallowmere::platform

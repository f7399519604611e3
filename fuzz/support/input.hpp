// Takes an input apart into the arguments of calls. At its end everything is 0.
#pragma once

#include "fuzz/support/target.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <type_traits>

namespace tallowmere::fuzz {

class Input {
  public:
    explicit Input(Bytes bytes) noexcept : rest_(bytes) {}

    [[nodiscard]] bool atEnd() const noexcept { return rest_.empty(); }

    template <class T> T take() noexcept {
        static_assert(std::is_trivially_copyable_v<T>);
        T value{};
        const std::size_t size = std::min(sizeof value, rest_.size());
        if (size != 0) std::memcpy(&value, rest_.data(), size);
        rest_ = rest_.subspan(size);
        return value;
    }
    Bytes bytes(std::size_t most) noexcept {
        const Bytes front = rest_.first(std::min(most, rest_.size()));
        rest_ = rest_.subspan(front.size());
        return front;
    }
    Bytes rest() noexcept { return bytes(rest_.size()); }

    /// One of a list of values that matter, or, for a byte beyond the list, any.
    template <class T, std::size_t Size> T oneOf(const std::array<T, Size>& list) noexcept {
        const std::size_t which = take<std::uint8_t>();
        return which < Size ? list[which] : take<T>();
    }

    double number() noexcept;
    std::uint16_t channel() noexcept;
    std::uint16_t boat() noexcept;

  private:
    Bytes rest_;
};

namespace detail {
using Limits = std::numeric_limits<double>;
inline constexpr std::array<double, 61> kNumbers{0.0,
                                                 -0.0,
                                                 1.0,
                                                 -1.0,
                                                 0.5,
                                                 -0.5,
                                                 2.5,
                                                 -2.5,
                                                 0.01,
                                                 10.0,
                                                 30.0,
                                                 90.0,
                                                 -90.0,
                                                 89.99,
                                                 90.01,
                                                 150.0,
                                                 179.999,
                                                 180.0,
                                                 -180.0,
                                                 180.001,
                                                 -180.001,
                                                 -181.0,
                                                 -0.0001,
                                                 359.999,
                                                 360.0,
                                                 370.0,
                                                 -370.0,
                                                 540.0,
                                                 540.001,
                                                 -540.0,
                                                 720.0,
                                                 720.001,
                                                 725.0,
                                                 -360.0,
                                                 -360.001,
                                                 -5e-324,
                                                 5e-324,
                                                 1e-300,
                                                 1e300,
                                                 -1e300,
                                                 32767.0,
                                                 -32767.0,
                                                 32766.9999999999,
                                                 45983.5,
                                                 -109205.0,
                                                 -109205.000001,
                                                 10566206.0,
                                                 10675199.2,
                                                 10675199.1,
                                                 -10675199.2,
                                                 2147483647.0,
                                                 2147483647.5,
                                                 -2147483648.5,
                                                 -2147483649.0,
                                                 0.49999999999999994,
                                                 9007199254740993.0,
                                                 Limits::infinity(),
                                                 -Limits::infinity(),
                                                 Limits::quiet_NaN(),
                                                 Limits::max(),
                                                 Limits::denorm_min()};
/// Channels with rules of their own, and the edges of what there is.
inline constexpr std::array<std::uint16_t, 53> kChannels{
    0,   1,   2,   4,   5,   6,   10,  11,  12,  13,  15,  16,  18,  19,  20,  24,  32,   48,
    49,  116, 117, 118, 121, 125, 126, 127, 146, 171, 172, 173, 180, 202, 203, 204, 237,  256,
    277, 278, 282, 283, 284, 370, 404, 412, 413, 414, 415, 39,  74,  167, 269, 381, 65535};
inline constexpr std::array<std::uint16_t, 10> kBoats{0, 1, 2, 3, 50, 98, 99, 100, 101, 65535};
} // namespace detail

inline double Input::number() noexcept {
    const std::size_t which = take<std::uint8_t>();
    if (which < detail::kNumbers.size()) return detail::kNumbers[which];
    if (which < 160) return (static_cast<double>(which) - 110.0) * 9.25;
    if (which < 200) return take<std::int16_t>() / 16.0;
    return take<double>();
}

inline std::uint16_t Input::channel() noexcept {
    return oneOf(detail::kChannels);
}

inline std::uint16_t Input::boat() noexcept {
    const std::size_t which = take<std::uint8_t>();
    return which < 128 ? static_cast<std::uint16_t>(which % 4) : detail::kBoats[which % detail::kBoats.size()];
}

} // namespace tallowmere::fuzz

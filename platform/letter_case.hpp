// The case of the letters A to Z, whatever the locale; all other characters stay.
#pragma once

namespace tallowmere::platform {

template <class Char> [[nodiscard]] constexpr Char lowerCase(Char c) noexcept {
    return c >= Char('A') && c <= Char('Z') ? static_cast<Char>(c - Char('A') + Char('a')) : c;
}

} // namespace tallowmere::platform

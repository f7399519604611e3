// The eleven functions for C++17 and later: channels and boats that exist, optionals where there may be no value.
// Everything is inline over tallowmere.h and costs what the C calls cost.
//
// Errors: a number or name that stands for nothing is refused once, where a Channel, Boat or index is made, by an
// exception: that is a mistake of the program or of its configuration, found at its start. What may be answered
// with "none" at run time comes as an empty optional, and reading and writing never throw. Channel::find asks
// without an exception.
//
// Threads, text and what is not promised: as in tallowmere.h.
#ifndef TALLOWMERE_TALLOWMERE_HPP
#define TALLOWMERE_TALLOWMERE_HPP

// Visual Studio says its standard in _MSVC_LANG.
#if __cplusplus < 201703L && (!defined(_MSVC_LANG) || _MSVC_LANG < 201703L)
#error "tallowmere/tallowmere.hpp needs C++17 or later (-std=c++17, /std:c++17)"
#endif

#include <tallowmere/tallowmere.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tallowmere::client {

/// No channel has this name. The text tells the name that a channel has with letters of another case, if there is one.
class UnknownName : public std::invalid_argument {
  public:
    explicit UnknownName(std::string_view name, const std::string& similar = {})
        : std::invalid_argument("no channel is named \"" + std::string(name) + "\"" +
                                (similar.empty() ? "" : "; did you mean \"" + similar + "\"?")) {}
};

/// The number of a channel, 0 to 413.
class Channel {
  public:
    /// A constant of channels.h: ZAN_BSP, ZAN_AWA, ...
    constexpr Channel(ZanChannel constant) noexcept // NOLINT(google-explicit-constructor): the constants are channels
        : number_(static_cast<std::uint16_t>(constant)) {}
    /// Throws std::out_of_range for 414 and above.
    constexpr explicit Channel(unsigned number)
        : number_(number < ZAN_CHANNEL_COUNT ? static_cast<std::uint16_t>(number)
                                             : throw std::out_of_range("channels are 0 to 413")) {}

    /// User channel 0 to 31. Throws std::out_of_range above.
    [[nodiscard]] static constexpr Channel user(unsigned index) {
        return index < kUserChannels ? Channel(ZAN_USER_0 + index)
                                     : throw std::out_of_range("user channels are 0 to 31");
    }
    /// The channel with this short name, as GetZanVarName gives it, letters as written; of several the lowest. Empty
    /// when there is none.
    [[nodiscard]] static std::optional<Channel> find(std::string_view name) noexcept {
        return findIf(name, [](char a, char b) { return a == b; });
    }
    /// The same. Throws UnknownName when there is none.
    [[nodiscard]] static Channel named(std::string_view name) {
        const std::optional<Channel> found = find(name);
        if (found) return *found;
        const auto lower = [](char letter) { return 'A' <= letter && letter <= 'Z' ? letter - 'A' + 'a' : letter; };
        const auto similar = findIf(name, [lower](char a, char b) { return lower(a) == lower(b); });
        throw UnknownName(name, similar ? similar->name() : std::string());
    }

    [[nodiscard]] constexpr std::uint16_t number() const noexcept { return number_; }
    /// The short name: the one set for it or the catalogue's, at most 15 bytes.
    [[nodiscard]] std::string name() const {
        std::array<char, ZAN_NAME_BYTES> text;
        GetZanVarName(number_, text.data());
        return text.data();
    }

    friend constexpr bool operator==(Channel a, Channel b) noexcept { return a.number_ == b.number_; }
    friend constexpr bool operator!=(Channel a, Channel b) noexcept { return !(a == b); }

  private:
    /// The lowest channel whose short name has the same letters.
    template <class SameLetter>
    [[nodiscard]] static std::optional<Channel> findIf(std::string_view name, SameLetter same) noexcept {
        if (name.empty()) return std::nullopt;
        for (unsigned number = 0; number < ZAN_CHANNEL_COUNT; ++number) {
            std::array<char, ZAN_NAME_BYTES> text;
            GetZanVarName(static_cast<std::uint16_t>(number), text.data());
            const std::string_view each = text.data();
            if (std::equal(name.begin(), name.end(), each.begin(), each.end(), same)) return Channel(number);
        }
        return std::nullopt;
    }

    static constexpr unsigned kUserChannels = ZAN_USER_31 - ZAN_USER_0 + 1;
    std::uint16_t number_;
};

/// The number of a boat, 0 to 99.
class Boat {
  public:
    /// Throws std::out_of_range for 100 and above.
    constexpr explicit Boat(unsigned number)
        : number_(number < ZAN_BOAT_COUNT ? static_cast<std::uint16_t>(number)
                                          : throw std::out_of_range("boats are 0 to 99")) {}

    [[nodiscard]] constexpr std::uint16_t number() const noexcept { return number_; }
    friend constexpr bool operator==(Boat a, Boat b) noexcept { return a.number_ == b.number_; }
    friend constexpr bool operator!=(Boat a, Boat b) noexcept { return !(a == b); }

  private:
    std::uint16_t number_;
};

inline constexpr Boat kOwnBoat{0};

/// The current value in the channel's base unit (see GetZanVar). Empty when there is none that a double can hold.
[[nodiscard]] inline std::optional<double> read(Channel channel, Boat boat = kOwnBoat) noexcept {
    double value;
    std::uint16_t source;
    if (GetZanVar(channel.number(), &value, boat.number(), &source) == 0) return std::nullopt;
    return value;
}

/// The channel that is read now in place of this one. Empty when an alternating channel stands for none.
[[nodiscard]] inline std::optional<Channel> sourceOf(Channel channel) noexcept {
    double value;
    std::uint16_t source;
    (void)GetZanVar(channel.number(), &value, kOwnBoat.number(), &source);
    if (source >= ZAN_CHANNEL_COUNT) return std::nullopt;
    return Channel(static_cast<ZanChannel>(source));
}

/// The current record as stored. Empty when it holds no value.
[[nodiscard]] inline std::optional<ChannelValue> readRecord(Channel channel, Boat boat = kOwnBoat) noexcept {
    ChannelValue record;
    std::uint16_t source;
    if (GetZanVar2(channel.number(), &record, boat.number(), &source) == 0) return std::nullopt;
    return record;
}

/// Writes a value in the base unit (see SetZanVar). False when it was refused: the channel is the clock, blocked or
/// write-locked, the boat does not keep it, or there is no section. True is no proof: the own boat's satellite-fix
/// channels drop it in silence unless a host accepts them. Read back where it matters.
inline bool write(Channel channel, double value, Boat boat = kOwnBoat) noexcept {
    return channel.number() != ZAN_TIME && SetZanVar(channel.number(), value, boat.number()) != 0;
}

/// The same with a ready record (see SetZanVar2).
inline bool writeRecord(Channel channel, const ChannelValue& record, Boat boat = kOwnBoat) noexcept {
    return channel.number() != ZAN_TIME && SetZanVar2(channel.number(), &record, boat.number()) != 0;
}

/// Takes the value away. The answer is that of write.
inline bool clear(Channel channel, Boat boat = kOwnBoat) noexcept {
    return write(channel, NO_VALUE, boat);
}

/// System variable 0 to 79, in its own unit. Empty when it has none or there is no such variable.
[[nodiscard]] inline std::optional<double> variable(unsigned index) noexcept {
    double value;
    if (index >= ZAN_SYSTEM_VARIABLE_COUNT || GetSysVar(static_cast<std::uint16_t>(index), &value) == 0)
        return std::nullopt;
    return value;
}

/// System flag 0 to 59; clear without a section. Empty when there is no such flag.
[[nodiscard]] inline std::optional<bool> flag(unsigned index) noexcept {
    std::uint8_t value;
    if (index >= ZAN_SYSTEM_FLAG_COUNT || GetSysBool(static_cast<std::uint16_t>(index), &value) == 0)
        return std::nullopt;
    return value != 0;
}

/// Names user channel 0 to 31 for all programs; at most 15 bytes arrive, and an empty name brings the catalogue's
/// back. Throws std::out_of_range for another number, and std::bad_alloc.
inline void nameUserChannel(unsigned index, std::string_view name) {
    SetZanUserVarName(Channel::user(index).number(), std::string(name).c_str());
}

/// Raises the man-overboard alarm at a position in degrees (see SetMOB). False when no host was told.
inline bool raiseManOverboard(double latitude, double longitude) noexcept {
    return SetMOB(latitude, longitude) != 0;
}

} // namespace tallowmere::client

#endif

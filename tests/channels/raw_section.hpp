// The section as plain bytes, addressed by offsets written out as numbers: no record type of the library
// plays a part, so a field that moved there is noticed here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace tallowmere::test {

inline constexpr std::size_t kSectionBytes = 253336;
inline constexpr std::int64_t kNoTimeTicks = INT64_MAX;
inline constexpr std::uint64_t kNoValueBits = 0x40DFFFC000000000;
inline constexpr std::int64_t kTicksPerSecond = 10'000'000;

/// Where things lie in the section.
namespace place {

inline constexpr std::size_t kHostWindow = 8;
inline constexpr std::size_t kMarksPath = 24;
inline constexpr std::size_t kDatabasePath = 608;
inline constexpr std::size_t kDataFolder = 1128;
inline constexpr std::size_t kAlternates = 5144;
inline constexpr std::size_t kVariables = 5504;
inline constexpr std::size_t kIntegers = 6144;
inline constexpr std::size_t kFlags = 6196;
inline constexpr std::size_t kBoatCount = 6376;
inline constexpr std::size_t kMobName = 253276;
inline constexpr std::size_t kMobLatitude = 253312;
inline constexpr std::size_t kMobLongitude = 253320;
inline constexpr std::size_t kMobFlagA = 253328;
inline constexpr std::size_t kMobFlagB = 253329;
inline constexpr std::size_t kFlagSomethingWritten = kFlags + 38;

constexpr std::size_t alternateCell(std::size_t row, std::size_t column) {
    return 5144 + 36 * row + 4 * column;
}
constexpr std::size_t variable(std::size_t index) {
    return 5504 + 8 * index;
}
constexpr std::size_t integer(std::size_t index) {
    return 6144 + 4 * index;
}
constexpr std::size_t flag(std::size_t index) {
    return 6196 + index;
}

constexpr std::size_t settings(std::size_t channel) {
    return 6380 + 108 * channel;
}
constexpr std::size_t calibrate(std::size_t channel) {
    return settings(channel);
}
constexpr std::size_t blocked(std::size_t channel) {
    return settings(channel) + 1;
}
constexpr std::size_t written(std::size_t channel) {
    return settings(channel) + 2;
}
constexpr std::size_t log(std::size_t channel) {
    return settings(channel) + 3;
}
constexpr std::size_t writeLockable(std::size_t channel) {
    return settings(channel) + 4;
}
constexpr std::size_t precision(std::size_t channel) {
    return settings(channel) + 6;
}
constexpr std::size_t damping(std::size_t channel) {
    return settings(channel) + 8;
}
constexpr std::size_t unitClass(std::size_t channel) {
    return settings(channel) + 10;
}
constexpr std::size_t longName(std::size_t channel) {
    return settings(channel) + 12;
}
constexpr std::size_t shortName(std::size_t channel) {
    return settings(channel) + 76;
}

constexpr std::size_t boat(std::size_t boat) {
    return 51092 + 80 * boat;
}
constexpr std::size_t hasData(std::size_t boatIndex) {
    return boat(boatIndex) + 4;
}
constexpr std::size_t boatName(std::size_t boatIndex) {
    return boat(boatIndex) + 6;
}
constexpr std::size_t mmsi(std::size_t boatIndex) {
    return boat(boatIndex) + 72;
}
constexpr std::size_t colour(std::size_t boatIndex) {
    return boat(boatIndex) + 76;
}

// Boats 0 and 1, by channel.
constexpr std::size_t fullBlock(std::size_t boatIndex) {
    return 59096 + 30224 * boatIndex;
}
constexpr std::size_t fullStamp(std::size_t channel, std::size_t boatIndex) {
    return 59096 + 30224 * boatIndex + 8 * channel;
}
constexpr std::size_t fullValue(std::size_t channel, std::size_t boatIndex) {
    return 62408 + 30224 * boatIndex + 16 * channel;
}
constexpr std::size_t fullSecond(std::size_t channel, std::size_t boatIndex) {
    return 59096 + 9936 + 30224 * boatIndex + 16 * channel;
}
constexpr std::size_t fullThird(std::size_t channel, std::size_t boatIndex) {
    return 75656 + 30224 * boatIndex + 16 * channel;
}

// Boats 2 to 99, by compact slot.
constexpr std::size_t compactStamp(std::size_t slot, std::size_t boatIndex) {
    return 116824 + 1360 * boatIndex + 8 * slot;
}
constexpr std::size_t compactValue(std::size_t slot, std::size_t boatIndex) {
    return 117096 + 1360 * boatIndex + 16 * slot;
}
constexpr std::size_t compactThird(std::size_t slot, std::size_t boatIndex) {
    return 117640 + 1360 * boatIndex + 16 * slot;
}

} // namespace place

/// A stretch of bytes.
struct Stretch {
    std::size_t offset;
    std::size_t size;
};

/// Reads and writes a section that lies elsewhere.
class RawSection {
  public:
    explicit RawSection(std::byte* bytes) : bytes_(bytes) {}

    template <class T> [[nodiscard]] T get(std::size_t offset) const {
        static_assert(std::is_arithmetic_v<T>);
        T value;
        std::memcpy(&value, bytes_ + offset, sizeof value);
        return value;
    }
    template <class T> void put(std::size_t offset, std::type_identity_t<T> value) {
        static_assert(std::is_arithmetic_v<T>);
        std::memcpy(bytes_ + offset, &value, sizeof value);
    }
    [[nodiscard]] std::u16string text(std::size_t offset, std::size_t characters) const {
        std::u16string result(characters, u'\0');
        std::memcpy(result.data(), bytes_ + offset, 2 * characters);
        return result.substr(0, result.find(u'\0'));
    }
    void putText(std::size_t offset, std::u16string_view text) {
        std::memcpy(bytes_ + offset, text.data(), 2 * text.size());
        put<char16_t>(offset + 2 * text.size(), u'\0');
    }
    [[nodiscard]] std::vector<std::uint8_t> copy() const {
        std::vector<std::uint8_t> bytes(kSectionBytes);
        std::memcpy(bytes.data(), bytes_, kSectionBytes);
        return bytes;
    }
    [[nodiscard]] std::byte* bytes() const { return bytes_; }

  private:
    std::byte* bytes_;
};

/// Names the bytes that differ outside the stretches; empty when there are none.
inline std::string changesOutside(const std::vector<std::uint8_t>& before, const std::vector<std::uint8_t>& after,
                                  std::initializer_list<Stretch> allowed) {
    std::vector<bool> mayChange(before.size(), false);
    for (const Stretch& stretch : allowed)
        for (std::size_t i = 0; i < stretch.size; ++i) mayChange.at(stretch.offset + i) = true;
    std::ostringstream found;
    int named = 0;
    for (std::size_t i = 0; i < before.size() && named < 10; ++i) {
        if (before[i] == after[i] || mayChange[i]) continue;
        found << "byte " << i << ": " << int{before[i]} << " became " << int{after[i]} << "; ";
        ++named;
    }
    return found.str();
}

} // namespace tallowmere::test

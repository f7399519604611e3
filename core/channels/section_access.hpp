// How the library touches the shared section: each field is taken once and written once, in one piece,
// whatever other threads and processes do meanwhile (docs/threading.md). No lock, and no operation that the
// processor would have to make atomic: a relaxed load or store is a plain one that the compiler neither
// splits, repeats nor leaves out, and the language's way to say that others write here too.
#pragma once

#include "core/channels/shared_area.hpp"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tallowmere {

/// Reads a naturally aligned field exactly once, so that a value that was checked is the value used.
template <class T> [[nodiscard]] inline T readOnce(const T& field) noexcept {
    static_assert(std::is_arithmetic_v<T> && std::atomic_ref<T>::is_always_lock_free);
    return std::atomic_ref<T>(const_cast<T&>(field)).load(std::memory_order_relaxed);
}

/// Writes a naturally aligned field in one store.
template <class T> inline void writeOnce(T& field, std::type_identity_t<T> value) noexcept {
    static_assert(std::is_arithmetic_v<T> && std::atomic_ref<T>::is_always_lock_free);
    std::atomic_ref<T>(field).store(value, std::memory_order_relaxed);
}

/// A value record in two registers. Kept this way because a record that is filled field by field and
/// then copied whole stalls on the processor's store forwarding.
struct Record {
    std::uint64_t header = 0;  // low byte: the kind
    std::uint64_t payload = 0; // bits of the payload

    [[nodiscard]] constexpr std::uint8_t kind() const noexcept { return static_cast<std::uint8_t>(header); }
    [[nodiscard]] constexpr double number() const noexcept { return std::bit_cast<double>(payload); }
    [[nodiscard]] constexpr std::int32_t integer() const noexcept { return static_cast<std::int32_t>(payload); }
    [[nodiscard]] constexpr std::int64_t ticks() const noexcept { return static_cast<std::int64_t>(payload); }
    [[nodiscard]] constexpr std::uint8_t byte() const noexcept { return static_cast<std::uint8_t>(payload); }

    [[nodiscard]] static constexpr Record ofNumber(double value) noexcept {
        return {static_cast<std::uint64_t>(StorageKind::Double), std::bit_cast<std::uint64_t>(value)};
    }
    [[nodiscard]] static constexpr Record ofInteger(std::int32_t value) noexcept {
        return {static_cast<std::uint64_t>(StorageKind::Integer), static_cast<std::uint32_t>(value)};
    }
    [[nodiscard]] static constexpr Record ofTicks(std::int64_t value) noexcept {
        return {static_cast<std::uint64_t>(StorageKind::Time), static_cast<std::uint64_t>(value)};
    }
    /// The record of a storage kind without a value.
    [[nodiscard]] static constexpr Record none(StorageKind kind) noexcept {
        switch (kind) {
        case StorageKind::Time:
            return ofTicks(kNoTime);
        case StorageKind::Integer:
            return ofInteger(kNone16);
        default:
            return ofNumber(NO_VALUE);
        }
    }
    /// True unless the payload equals the no-value payload of that storage kind. A NaN is a value. The
    /// record's own kind byte plays no part.
    [[nodiscard]] constexpr bool holds(StorageKind storageKind) const noexcept {
        switch (storageKind) {
        case StorageKind::Time:
            return ticks() != kNoTime;
        case StorageKind::Integer:
            return integer() != kNone16;
        default:
            return holdsNumber();
        }
    }
    /// True unless the payload is the double 32767.0, which has one bit pattern only.
    [[nodiscard]] constexpr bool holdsNumber() const noexcept {
        return payload != std::bit_cast<std::uint64_t>(double{NO_VALUE});
    }
    friend constexpr bool operator==(const Record&, const Record&) = default;
};
static_assert(std::endian::native == std::endian::little, "the section is little-endian");

namespace detail {
inline constexpr std::size_t kPayloadWord = offsetof(ChannelValue, payload) / sizeof(std::uint64_t);
inline std::uint64_t& wordOf(ChannelValue& record, std::size_t word) noexcept {
    return reinterpret_cast<std::uint64_t*>(&record)[word];
}
} // namespace detail

/// Copies a record out of the section as two 8-byte loads, the payload first: it is stored last. So who meets the first
/// write over a record of zeros, as boat 1 has them, gets a zero or the value, and not the value's bits by the kind 0.
[[nodiscard]] inline Record loadRecord(const ChannelValue& from) noexcept {
    auto& record = const_cast<ChannelValue&>(from);
    const std::uint64_t payload = readOnce(detail::wordOf(record, detail::kPayloadWord));
    return {readOnce(detail::wordOf(record, 0)), payload};
}

/// Copies a record into the section as two 8-byte stores, header first.
inline void storeRecord(ChannelValue& to, const Record& record) noexcept {
    writeOnce(detail::wordOf(to, 0), record.header);
    writeOnce(detail::wordOf(to, detail::kPayloadWord), record.payload);
}

/// Replaces the payload only; the header with its kind byte stays.
inline void storePayload(ChannelValue& to, std::uint64_t payload) noexcept {
    writeOnce(detail::wordOf(to, detail::kPayloadWord), payload);
}

/// Writes text into a fixed field: at most its size less one characters, always terminated, the rest
/// of the field as it was.
template <std::size_t Size> inline void writeText(char16_t (&field)[Size], std::u16string_view text) noexcept {
    const std::size_t length = std::min(text.size(), Size - 1);
    for (std::size_t i = 0; i < length; ++i) writeOnce(field[i], text[i]);
    writeOnce(field[length], u'\0');
}

/// Copies a text field out of the section. Ends at the terminator, or at the field's last character
/// when somebody has overwritten the terminator.
template <std::size_t Size> [[nodiscard]] inline std::u16string readText(const char16_t (&field)[Size]) {
    std::array<char16_t, Size> copy;
    for (std::size_t i = 0; i < Size; ++i) copy[i] = readOnce(field[i]);
    return {copy.begin(), std::find(copy.begin(), copy.end() - 1, u'\0')};
}

} // namespace tallowmere

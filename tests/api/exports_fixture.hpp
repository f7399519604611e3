// The eleven functions of the loaded library, with the section laid open beside them.
#pragma once

#include <tallowmere/tallowmere.h>

#include "tests/api/live_section.hpp"
#include "tests/channels/raw_section.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <limits>
#include <string>

#if defined(TALLOWMERE_STATIC)
#error "this program must use the shared library"
#endif

namespace tallowmere::test {

inline std::uint64_t bitsOf(double value) {
    return std::bit_cast<std::uint64_t>(value);
}

/// What GetZanVar left in its arguments.
struct Reading {
    bool holds;
    double value;
    std::uint16_t source;
};

inline constexpr double kUntouched = -987.25;

inline Reading readVar(unsigned channel, unsigned boat = 0) {
    Reading reading{false, kUntouched, 4444};
    reading.holds = GetZanVar(static_cast<std::uint16_t>(channel), &reading.value, static_cast<std::uint16_t>(boat),
                              &reading.source) != 0;
    return reading;
}

inline ChannelValue recordOf(std::uint64_t header, std::uint64_t payload) {
    ChannelValue record;
    std::memcpy(&record, &header, 8);
    std::memcpy(reinterpret_cast<char*>(&record) + 8, &payload, 8);
    return record;
}
inline std::uint64_t headerOf(const ChannelValue& record) {
    std::uint64_t bits;
    std::memcpy(&bits, &record, 8);
    return bits;
}
inline std::uint64_t payloadOf(const ChannelValue& record) {
    std::uint64_t bits;
    std::memcpy(&bits, reinterpret_cast<const char*>(&record) + 8, 8);
    return bits;
}

/// Every test begins with a section like new.
class ExportsTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_NE(liveSection(), nullptr);
        renewSection();
    }
    void acceptFixes() { raw.put<std::int32_t>(place::integer(6), 3); }
    void setFlag(std::size_t index, std::uint8_t value = 1) { raw.put<std::uint8_t>(place::flag(index), value); }

    RawSection raw{liveSection()};
};

} // namespace tallowmere::test

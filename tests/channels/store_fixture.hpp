// A freshly made section with a value store on an in-memory machine.
#pragma once

#include "core/channels/area_defaults.hpp"
#include "core/channels/value_store.hpp"
#include "tests/channels/raw_section.hpp"
#include "tests/support/memory_platform.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <memory>
#include <new>

namespace tallowmere::test {

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline constexpr std::int64_t kStampNow = INT64_MAX; // a stamp that means now

inline std::uint64_t bitsOf(double value) {
    return std::bit_cast<std::uint64_t>(value);
}

/// Section-sized, page-aligned zeros with nothing of ours behind them, so that a sanitizer sees every
/// access beyond the end.
class SectionMemory {
  public:
    SectionMemory() : start_(new (std::align_val_t{4096}) std::byte[kSectionBytes]()) {}
    ~SectionMemory() { ::operator delete[](start_, std::align_val_t{4096}); }
    SectionMemory(const SectionMemory&) = delete;
    SectionMemory& operator=(const SectionMemory&) = delete;
    [[nodiscard]] std::byte* bytes() const { return start_; }
    [[nodiscard]] SharedArea* area() const { return reinterpret_cast<SharedArea*>(start_); }

  private:
    std::byte* start_;
};

class StoreTest : public ::testing::Test {
  protected:
    explicit StoreTest(ValueCorrector* corrector = nullptr) : store(Context{platform, memory.area()}, corrector) {
        initialiseArea(*memory.area());
    }

    bool write(ChannelIndex channel, double value, BoatIndex boat = 0, std::int64_t stamp = kStampNow) {
        return store.store(channel, store.doubleToRecord(channel, value).record, boat, stamp);
    }
    [[nodiscard]] double read(ChannelIndex channel, BoatIndex boat = 0) const {
        return store.recordAsDouble(channel, store.fetch(channel, boat).record).value;
    }
    /// Payload of the current record of boat 0 or 1, as it lies in the section.
    [[nodiscard]] double stored(std::size_t channel, std::size_t boat = 0) const {
        return raw.get<double>(place::fullValue(channel, boat) + 8);
    }
    [[nodiscard]] std::uint64_t storedBits(std::size_t channel, std::size_t boat = 0) const {
        return raw.get<std::uint64_t>(place::fullValue(channel, boat) + 8);
    }
    [[nodiscard]] std::uint64_t storedHeader(std::size_t channel, std::size_t boat = 0) const {
        return raw.get<std::uint64_t>(place::fullValue(channel, boat));
    }
    [[nodiscard]] std::int64_t stampOf(std::size_t channel, std::size_t boat = 0) const {
        return raw.get<std::int64_t>(place::fullStamp(channel, boat));
    }
    [[nodiscard]] std::uint32_t boatCount() const { return raw.get<std::uint32_t>(place::kBoatCount); }

    SectionMemory memory;
    RawSection raw{memory.bytes()};
    MemoryMachine machine;
    MemoryPlatform platform{machine};
    ValueStore store;
};

} // namespace tallowmere::test

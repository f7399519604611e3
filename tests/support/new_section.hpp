// A section as its creator has it before any settings are read, on a machine in memory.
#pragma once

#include "core/channels/area_defaults.hpp"
#include "core/channels/context.hpp"
#include "core/channels/section_access.hpp"
#include "core/channels/system_values.hpp"
#include "core/channels/value_store.hpp"
#include "tests/support/memory_platform.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <span>

namespace tallowmere::test {

class NewSection : public ::testing::Test {
  protected:
    static std::unique_ptr<SharedArea> makeArea() {
        auto fresh = std::make_unique<SharedArea>();
        initialiseArea(*fresh);
        return fresh;
    }

    /// Any process may leave any bytes.
    void fillWithNoise(unsigned seed) {
        std::mt19937 random(seed);
        std::uniform_int_distribution<int> byte(0, 255);
        for (std::byte& each : std::as_writable_bytes(std::span(area.get(), 1)))
            each = static_cast<std::byte>(byte(random));
    }

    [[nodiscard]] bool sameBytes(const SharedArea& other) const {
        return std::memcmp(area.get(), &other, sizeof other) == 0;
    }

    MemoryMachine machine;
    MemoryPlatform platform{machine};
    std::unique_ptr<SharedArea> area = makeArea();
    Context context{platform, area.get()};
    Context withoutSection{platform, nullptr};
    ValueStore values{context};
    SystemValues system{area.get()};
};

} // namespace tallowmere::test

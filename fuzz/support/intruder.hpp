// Another process that writes into the section whatever the input says: between calls, and between the loads of
// one call.
#pragma once

#include "fuzz/support/input.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace tallowmere::fuzz {

class Intruder {
  public:
    using Put = std::function<void(std::size_t offset, Bytes bytes)>;

    /// section   to look at; what is written goes through `put`
    Intruder(Input& input, const std::byte* section, Put put);

    /// Another section to look at, in place of the first.
    void lookAt(const std::byte* section) noexcept { section_ = section; }

    /// Writes a few bytes at a place of the input's choice.
    void writeNow();
    /// The same before a load that the library will make.
    void writeLater();
    /// Some of the loads to come each find other bytes than stood there just before.
    void storm();
    /// Nothing will change before somebody says so again.
    [[nodiscard]] bool isQuiet() const noexcept { return waiting_ == 0 && storm_ == 0; }

    /// To be called before each load of the library (LoadWatch).
    void beforeLoad(std::size_t offset, std::size_t size);

  private:
    struct Patch {
        std::size_t offset = 0;
        std::size_t size = 0;
        unsigned loads = 0; // of the library before it
        std::array<std::uint8_t, 16> bytes{};
    };

    Patch takePatch();
    std::size_t takePlace();
    void put(const Patch& patch) { put_(patch.offset, {patch.bytes.data(), patch.size}); }
    void change(std::size_t offset, std::size_t size);

    Input& input_;
    const std::byte* section_;
    Put put_;
    std::array<Patch, 4> later_;
    std::size_t waiting_ = 0;
    unsigned storm_ = 0; // loads that it lasts
    std::uint64_t noise_ = 1;
};

} // namespace tallowmere::fuzz

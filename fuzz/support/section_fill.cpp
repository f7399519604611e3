#include "fuzz/support/section_fill.hpp"

#include "fuzz/support/places.hpp"

#include <cstring>
#include <random>

namespace tallowmere::fuzz {
namespace {

int repeatedByte(Fill fill) noexcept {
    switch (fill) {
    case Fill::Ones:
        return 0xFF;
    case Fill::Sevens:
        return 0x7F;
    case Fill::Bits:
        return 0x01;
    default:
        return 0;
    }
}

} // namespace

void fillSection(std::byte* section, Fill fill) noexcept {
    std::memset(section, repeatedByte(fill), test::kSectionBytes);
    if (fill != Fill::Noise && fill != Fill::OtherNoise) return;
    std::mt19937_64 random(static_cast<unsigned>(fill));
    for (std::size_t at = 0; at < test::kSectionBytes; at += 8) {
        const std::uint64_t word = random();
        std::memcpy(section + at, &word, 8);
    }
}

} // namespace tallowmere::fuzz

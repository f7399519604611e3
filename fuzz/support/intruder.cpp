#include "fuzz/support/intruder.hpp"

#include "fuzz/support/places.hpp"

#include <algorithm>
#include <utility>

namespace tallowmere::fuzz {

Intruder::Intruder(Input& input, const std::byte* section, Put put)
    : input_(input), section_(section), put_(std::move(put)) {}

Intruder::Patch Intruder::takePatch() {
    Patch patch;
    patch.offset = takePlace();
    const std::uint8_t how = input_.take<std::uint8_t>();
    patch.size = how % 17;
    if (how >= 128) {
        patch.bytes.fill(how >= 192 ? 0xFF : input_.take<std::uint8_t>());
    } else {
        const Bytes bytes = input_.bytes(patch.size);
        std::copy(bytes.begin(), bytes.end(), patch.bytes.begin());
    }
    return patch;
}

/// A field that calls look at, or any byte.
std::size_t Intruder::takePlace() {
    switch (input_.take<std::uint8_t>() % 12) {
    case 0:
        return place::settings(input_.channel() % kChannels) + input_.take<std::uint8_t>() % 108;
    case 1:
        return place::unitClass(input_.channel() % kChannels);
    case 2:
        return place::flag(input_.take<std::uint8_t>() % 60);
    case 3:
        return place::integer(input_.take<std::uint8_t>() % 13);
    case 4:
        return place::variable(input_.take<std::uint8_t>() % 80);
    case 5:
        return place::kBoatCount;
    case 6:
        return place::kAlternates + 4 * (input_.take<std::uint8_t>() % 90);
    case 7:
    case 8: {
        const auto found = valuePlace(input_.channel() % kChannels, input_.boat() % kBoats);
        return found ? (input_.take<std::uint8_t>() % 2 != 0 ? found->record : found->stamp) : 0;
    }
    case 9:
        return place::kHostWindow;
    case 10:
        return place::boat(input_.boat() % kBoats) + input_.take<std::uint8_t>() % 80;
    default:
        return input_.take<std::uint32_t>() % test::kSectionBytes;
    }
}

void Intruder::writeNow() {
    put(takePatch());
}

void Intruder::writeLater() {
    if (waiting_ == later_.size()) return;
    Patch patch = takePatch();
    patch.loads = input_.take<std::uint8_t>();
    later_[waiting_++] = patch;
}

void Intruder::storm() {
    storm_ = input_.take<std::uint8_t>();
    noise_ = input_.take<std::uint8_t>();
}

void Intruder::beforeLoad(std::size_t offset, std::size_t size) {
    if (storm_ != 0) {
        --storm_;
        change(offset, size);
    }
    if (waiting_ != 0 && later_[waiting_ - 1].loads-- == 0) put(later_[--waiting_]);
}

void Intruder::change(std::size_t offset, std::size_t size) {
    noise_ = noise_ * 6364136223846793005U + 1442695040888963407U;
    Patch patch;
    patch.offset = offset;
    patch.size = std::min({size, patch.bytes.size(), test::kSectionBytes - offset});
    switch (noise_ >> 62) {
    case 0:
        break; // zeros
    case 1:
        patch.bytes.fill(0xFF);
        break;
    case 2:
        for (std::size_t i = 0; i < patch.size; ++i)
            patch.bytes[i] = static_cast<std::uint8_t>(noise_ >> (16 + 8 * (i % 4)));
        break;
    default: // nearly what it was
        std::memcpy(patch.bytes.data(), section_ + offset, patch.size);
        patch.bytes[0] ^= 1;
    }
    put(patch);
}

} // namespace tallowmere::fuzz

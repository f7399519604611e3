// The track store and the memory manager: what other programs see while memory is given back, and what
// happens when there is none.
#include "settings/track_settings.hpp"
#include "tests/support/new_section.hpp"

#include <cstdlib>
#include <new>

namespace {

const volatile std::uint8_t* watched = nullptr;
int seen = -1;
bool noMemory = false;

} // namespace

void* operator new(std::size_t size) {
    if (void* memory = noMemory ? nullptr : std::malloc(size != 0 ? size : 1)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    if (watched != nullptr && memory != nullptr) seen = *watched;
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

namespace tallowmere::test {
namespace {

using TrackMemory = NewSection;

TEST_F(TrackMemory, FlagIsOneWhilePointsAreGivenBackAndZeroAfterwards) {
    TrackSettings tracks(platform);
    tracks.tracks[5].points.resize(10);
    watched = &area->trackReset;
    resetBoatTrack(*area, tracks, 5);
    watched = nullptr;
    EXPECT_EQ(seen, 1);
    EXPECT_EQ(area->trackReset, 0);
}

TEST_F(TrackMemory, DestructionWithoutMemorySavesNothingAndIsSilent) {
    auto tracks = std::make_unique<TrackSettings>(platform);
    tracks->tracks[5].points.resize(10);
    noMemory = true;
    tracks.reset();
    noMemory = false;
    EXPECT_TRUE(machine.settings.empty());
}

} // namespace
} // namespace tallowmere::test

// What other programs see while a track is being emptied: memory that is given back is looked at on its way.
#include "settings/track_settings.hpp"
#include "tests/support/new_section.hpp"

#include <cstdlib>
#include <new>

namespace {

const volatile std::uint8_t* watched = nullptr;
int seen = -1;

} // namespace

void* operator new(std::size_t size) {
    if (void* memory = std::malloc(size != 0 ? size : 1)) return memory;
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

using TrackReset = NewSection;

TEST_F(TrackReset, FlagIsOneWhilePointsAreGivenBackAndZeroAfterwards) {
    TrackSettings tracks(platform);
    tracks.tracks[5].points.resize(10);
    watched = &area->trackReset;
    resetBoatTrack(*area, tracks, 5);
    watched = nullptr;
    EXPECT_EQ(seen, 1);
    EXPECT_EQ(area->trackReset, 0);
}

} // namespace
} // namespace tallowmere::test

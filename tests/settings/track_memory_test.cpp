// The track store and the memory manager: what other programs see while memory is given back, and what
// happens when there is none.
#include "settings/track_settings.hpp"
#include "tests/support/counted_memory.hpp"
#include "tests/support/new_section.hpp"

namespace tallowmere::test {
namespace {

const volatile std::uint8_t* watched = nullptr;
int seen = -1;

void look() {
    seen = *watched;
}

using TrackMemory = NewSection;

TEST_F(TrackMemory, FlagIsOneWhilePointsAreGivenBackAndZeroAfterwards) {
    TrackSettings tracks(platform);
    tracks.tracks[5].points.resize(10);
    watched = &area->trackReset;
    watchReleases(look);
    resetBoatTrack(*area, tracks, 5);
    watchReleases(nullptr);
    EXPECT_EQ(seen, 1);
    EXPECT_EQ(area->trackReset, 0);
}

TEST_F(TrackMemory, DestructionWithoutMemorySavesNothingAndIsSilent) {
    auto tracks = std::make_unique<TrackSettings>(platform);
    tracks->tracks[5].points.resize(10);
    failAllocation(1);
    tracks.reset();
    failAllocation(0);
    EXPECT_TRUE(machine.settings.empty());
}

} // namespace
} // namespace tallowmere::test

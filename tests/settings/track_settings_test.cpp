#include "settings/reg_ex.hpp"
#include "settings/track_settings.hpp"
#include "tests/support/new_section.hpp"

#include <optional>

namespace tallowmere::test {
namespace {

class Tracks : public NewSection {
  protected:
    std::uint32_t saved(const std::u16string& name) {
        const MemoryValue& value = machine.settings.at(kTrackKey).at(name);
        EXPECT_EQ(value.type, platform::SettingsType::Dword);
        std::uint32_t number = 0;
        EXPECT_EQ(value.bytes.size(), sizeof number);
        std::memcpy(&number, value.bytes.data(), std::min(value.bytes.size(), sizeof number));
        return number;
    }
};

TEST_F(Tracks, DestructionSavesEverySetting) {
    {
        TrackSettings tracks(platform);
        tracks.trackColour = 0xFF00FF00;
        tracks.trackColourRgb = 0x90EE90;
        tracks.trackMin = -5;
        tracks.trackMax = 12;
        tracks.trackWidth = 3;
        tracks.showTrack = true;
        tracks.showDepths = true;
        tracks.showCurrents = true;
        tracks.limitMinutes = 90;
        tracks.limitTrack = true;
        EXPECT_TRUE(machine.settings.empty());
    }
    EXPECT_EQ(machine.settings.at(kTrackKey).size(), 12u);
    EXPECT_EQ(saved(u"TrackColour"), 0xFF00FF00u);
    EXPECT_EQ(saved(u"TrackColourRGB"), 0x90EE90u);
    EXPECT_EQ(saved(u"TrackMin"), 0xFFFFFFFBu);
    EXPECT_EQ(saved(u"TrackMax"), 12u);
    EXPECT_EQ(saved(u"TrackWidth"), 3u);
    EXPECT_EQ(saved(u"bTrack"), 1u);
    EXPECT_EQ(saved(u"bTrackOtherBoat"), 0u);
    EXPECT_EQ(saved(u"bTrackDepths"), 1u);
    EXPECT_EQ(saved(u"bTrackWinds"), 0u);
    EXPECT_EQ(saved(u"bTrackCurrents"), 1u);
    EXPECT_EQ(saved(u"LimitTrackMinutes"), 90u);
    EXPECT_EQ(saved(u"bLimitTrack"), 1u);
}

/// Which values are missing when the n-th write fails tells the order of the writes.
TEST_F(Tracks, SettingsAreSavedInTheirOrder) {
    const char16_t* const order[] = {u"TrackColourRGB",  u"TrackWidth",        u"TrackMin",    u"TrackMax",
                                     u"TrackColour",     u"LimitTrackMinutes", u"bLimitTrack", u"bTrack",
                                     u"bTrackOtherBoat", u"bTrackDepths",      u"bTrackWinds", u"bTrackCurrents"};
    for (int nth = 1; nth <= 12; ++nth) {
        machine.settings.clear();
        machine.failOnce(Step::WriteValue, nth);
        { const TrackSettings tracks(platform); }
        const auto& stored = machine.settings.at(kTrackKey);
        EXPECT_EQ(stored.size(), 11u);
        EXPECT_FALSE(stored.contains(order[nth - 1])) << nth;
    }
}

TEST_F(Tracks, FailureToSaveIsSilent) {
    machine.failOnce(Step::CreateSettings);
    { const TrackSettings tracks(platform); }
    EXPECT_TRUE(machine.settings.empty());
    EXPECT_TRUE(machine.errorsShown.empty());
}

TEST_F(Tracks, ClearingOneBoatGivesItsStorageBackAndLeavesTheOthers) {
    TrackSettings tracks(platform);
    for (BoatTrack& track : tracks.tracks) {
        track.header = {1, 2, 3};
        track.points.resize(1000);
    }
    tracks.ClearBoatTrack(7);
    EXPECT_EQ(tracks.tracks[7].header, (std::array<std::uint64_t, 3>{}));
    EXPECT_EQ(tracks.tracks[7].points.capacity(), 0u);
    EXPECT_EQ(tracks.tracks[6].points.size(), 1000u);
    EXPECT_EQ(tracks.tracks[8].header[2], 3u);
}

TEST_F(Tracks, ClearingABoatThatDoesNotExistDoesNothing) {
    TrackSettings tracks(platform);
    tracks.tracks[99].points.resize(1);
    tracks.ClearBoatTrack(100);
    tracks.ClearBoatTrack(65535);
    EXPECT_EQ(tracks.tracks[99].points.size(), 1u);
}

TEST_F(Tracks, ClearingAllEmptiesEveryBoat) {
    TrackSettings tracks(platform);
    for (BoatTrack& track : tracks.tracks) {
        track.header = {1, 2, 3};
        track.points.resize(2);
    }
    tracks.ClearAllTracks();
    for (const BoatTrack& track : tracks.tracks) {
        EXPECT_EQ(track.header, (std::array<std::uint64_t, 3>{}));
        EXPECT_EQ(track.points.capacity(), 0u);
    }
}

TEST_F(Tracks, ResetLeavesTheFlagOfTheSectionAtZero) {
    TrackSettings tracks(platform);
    tracks.tracks[3].points.resize(2);
    area->trackReset = 0xAA;
    resetBoatTrack(*area, tracks, 3);
    EXPECT_TRUE(tracks.tracks[3].points.empty());
    EXPECT_EQ(area->trackReset, 0);
    EXPECT_EQ(reinterpret_cast<const std::uint8_t*>(area.get())[253176], 0);
    const std::uint32_t neighbour = area->number253178; // a copy: it lies on no 4-byte boundary
    EXPECT_EQ(neighbour, 32767u);
}

} // namespace
} // namespace tallowmere::test

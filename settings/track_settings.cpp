#include "settings/track_settings.hpp"

#include "settings/reg_ex.hpp"

#include <new>

namespace tallowmere {

TrackSettings::~TrackSettings() {
    try {
        save();
    } catch (const std::bad_alloc&) {
        // Saving is a best effort: the settings stay as they were.
    }
}

void TrackSettings::save() const {
    CRegEx key(platform_);
    key.Create(kTrackKey);
    const auto write = [&](const char16_t* name, auto value) {
        key.writeDword(name, static_cast<std::uint32_t>(value));
    };
    write(u"TrackColourRGB", trackColourRgb);
    write(u"TrackWidth", trackWidth);
    write(u"TrackMin", trackMin);
    write(u"TrackMax", trackMax);
    write(u"TrackColour", trackColour);
    write(u"LimitTrackMinutes", limitMinutes);
    write(u"bLimitTrack", limitTrack);
    write(u"bTrack", showTrack);
    write(u"bTrackOtherBoat", showOtherBoats);
    write(u"bTrackDepths", showDepths);
    write(u"bTrackWinds", showWinds);
    write(u"bTrackCurrents", showCurrents);
}

void TrackSettings::ClearAllTracks() noexcept {
    for (BoatIndex boat = 0; boat < kBoatCount; ++boat) ClearBoatTrack(boat);
}

void TrackSettings::ClearBoatTrack(BoatIndex boat) noexcept {
    if (boat < kBoatCount) tracks[boat] = BoatTrack{};
}

void resetBoatTrack(SharedArea& area, TrackSettings& tracks, BoatIndex boat) noexcept {
    writeOnce(area.trackReset, 1);
    tracks.ClearBoatTrack(boat);
    writeOnce(area.trackReset, 0);
}

} // namespace tallowmere

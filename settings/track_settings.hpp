// How boat tracks are drawn, and the recorded tracks. A host program makes such a store and hands it to its
// core object; the library only saves the settings and empties the tracks.
#pragma once

#include "core/channels/section_access.hpp"
#include "platform/platform.hpp"

#include <array>
#include <cstdint>
#include <vector>

namespace tallowmere {

/// One recorded point; its content is the host's.
struct TrackPoint {
    std::array<std::uint64_t, 2> words{};
};
static_assert(sizeof(TrackPoint) == 16);

/// The recorded track of one boat.
struct BoatTrack {
    std::array<std::uint64_t, 3> header{}; // the host's
    std::vector<TrackPoint> points;        // in recording order
};

/// Owned by one core object. Not safe for several threads at once.
class TrackSettings {
  public:
    explicit TrackSettings(platform::Platform& platform) noexcept : platform_(platform) {}
    /// Saves the settings to the user's settings, ignoring failures, and empties all tracks.
    ~TrackSettings();
    TrackSettings(const TrackSettings&) = delete;
    TrackSettings& operator=(const TrackSettings&) = delete;

    void ClearAllTracks() noexcept;
    /// Zeroes the boat's header and empties its points, giving their storage back. Ignored for 100 and above.
    void ClearBoatTrack(BoatIndex boat) noexcept;

    std::uint32_t trackColour = 0;
    std::uint32_t trackColourRgb = 0;
    std::int32_t trackMin = 0; // ends of the colour range
    std::int32_t trackMax = 0;
    std::int32_t trackWidth = 0;
    bool showTrack = false; // the own boat's
    bool showOtherBoats = false;
    bool showDepths = false;
    bool showWinds = false;
    bool showCurrents = false;
    std::int32_t limitMinutes = 0;
    bool limitTrack = false;
    std::array<BoatTrack, kBoatCount> tracks;

  private:
    void save() const;

    platform::Platform& platform_;
};

/// Empties one boat's track, with the section's track-reset flag set meanwhile so that other programs
/// keep off.
void resetBoatTrack(SharedArea& area, TrackSettings& tracks, BoatIndex boat) noexcept;

} // namespace tallowmere

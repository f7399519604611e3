// CCore: the one central object of a process that uses the library.
//
// The shared library holds one, constructed while it is loaded (under the loader lock on Windows) and
// destroyed while it is unloaded. A host program that links the static core constructs its own.
#pragma once

#include "calibration/calibration.hpp"
#include "core/channels/context.hpp"
#include "core/channels/section_name.hpp"
#include "core/channels/system_values.hpp"
#include "core/channels/value_store.hpp"
#include "core/reserved_state.hpp"
#include "settings/track_settings.hpp"

#include <atomic>
#include <memory>
#include <string>

namespace tallowmere {

class CCore {
  public:
    /// Makes or opens the section. The first creator fills it from the user's settings and the data
    /// folder; a later opener takes it as it is. When that fails the failure is shown and logged, and the
    /// object answers as without data. Never throws.
    /// bStart   also run the second stage of the start-up, for hosts: channels blocked by system flags,
    ///          calibration, the host's folder in the settings (second_stage.hpp)
    CCore(platform::Platform& platform, bool bStart) noexcept;
    explicit CCore(bool bStart) noexcept;

    /// Waits for a busy worker (at most five times 50 ms), drops the track store and lets the section go.
    /// Writes nothing back but the track settings, when there is a track store.
    virtual ~CCore();
    CCore(const CCore&) = delete;
    CCore& operator=(const CCore&) = delete;

    /// Null when the section could not be made or mapped.
    [[nodiscard]] SharedArea* area() const noexcept { return values_.area(); }
    [[nodiscard]] const Context& context() const noexcept { return values_.context(); }
    [[nodiscard]] ValueStore& values() noexcept { return values_; }
    [[nodiscard]] const ValueStore& values() const noexcept { return values_; }
    [[nodiscard]] SystemValues system() const noexcept { return SystemValues(area()); }

    /// The twenty calibration items. Empty and unused unless the second stage has run or a host fills them.
    [[nodiscard]] Calibration& calibration() noexcept { return calibration_; }
    [[nodiscard]] const Calibration& calibration() const noexcept { return calibration_; }

    /// True when this object made the section, false when it opened one that was there.
    [[nodiscard]] bool madeSection() const noexcept;
    [[nodiscard]] bool setupDone() const noexcept { return setupDone_ != 0; }

    /// Hands the object a track store, or takes it away. Absent unless a host brings one.
    void setTrackSettings(std::unique_ptr<TrackSettings> tracks) noexcept { tracks_ = std::move(tracks); }
    [[nodiscard]] TrackSettings* trackSettings() const noexcept { return tracks_.get(); }

    /// For a host with a worker thread: the destructor waits while it is set.
    /// Called on the worker's own thread: what that did before `false` is done when the destructor goes on.
    void setWorkerBusy(bool busy) noexcept { workerBusy_.store(busy ? 1 : 0, std::memory_order_release); }
    /// True from the moment that the worker is asked to stop. Set at construction too (KEPT).
    [[nodiscard]] bool stopRequested() const noexcept { return stopRequested_.load(std::memory_order_acquire) != 0; }

  private:
    std::unique_ptr<platform::SharedSection> attachSection(platform::Platform& platform) noexcept;
    void fillNewSection() noexcept;
    void StartCore() noexcept;

    Calibration calibration_;
    ReservedState reserved_;
    std::atomic<std::uint8_t> stopRequested_ = 1;
    std::atomic<std::uint8_t> workerBusy_ = 0;
    std::uint8_t setupDone_ = 1;
    std::unique_ptr<TrackSettings> tracks_;
    std::unique_ptr<platform::SharedSection> section_;
    ValueStore values_;
};

} // namespace tallowmere

// The host program's part: it owns a core object, accepts satellite fixes and answers man-overboard calls.
#pragma once

#include "core/ccore.hpp"
#include "platform/host_window.hpp"
#include "tools/feed/section_sink.hpp"

#include <functional>
#include <memory>
#include <string_view>

namespace tallowmere::feed {

class FeedHost {
  public:
    using Report = std::function<void(std::string_view)>;
    /// Whether values pass through the user's calibration on their way into the section.
    enum class Values { Calibrated, Raw };

    /// Attaches to the shared section and makes this program the host in it. What a player left there that was
    /// killed is taken out, and told: the live values to come must not stand under its sign.
    /// window   may be null: then man-overboard calls don't reach this program
    /// report   gets a line for each man-overboard call, inside poll(), and for a replay that was ended, at once
    /// values   Calibrated also runs the second start-up stage, as every host with a calibration does
    FeedHost(platform::Platform& platform, std::unique_ptr<platform::HostWindow> window, Report report,
             Values values = Values::Calibrated);
    /// Takes the window out of the section again, unless another host has put its own there meanwhile.
    ~FeedHost();
    FeedHost(const FeedHost&) = delete;
    FeedHost& operator=(const FeedHost&) = delete;

    /// False when the shared section could not be made or opened: nothing can be written.
    [[nodiscard]] bool ready() const noexcept { return core_.area() != nullptr; }
    [[nodiscard]] CCore& core() noexcept { return core_; }
    [[nodiscard]] ChannelSink& sink() noexcept { return sink_; }

    /// Handles what has arrived at the window, and puts the window back into the section when no host is
    /// there any more. Call it several times a second.
    void poll();

  private:
    void reportManOverboard() const;

    CCore core_;
    SectionSink sink_;
    std::unique_ptr<platform::HostWindow> window_;
    Report report_;
};

} // namespace tallowmere::feed

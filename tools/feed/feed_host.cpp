#include "tools/feed/feed_host.hpp"

#include "core/channels/mob_mark.hpp"
#include "core/channels/replay_sign.hpp"

#include <array>
#include <cmath>
#include <cstdio>
#include <string>
#include <utility>

namespace tallowmere::feed {
namespace {

std::string angleText(double degrees, char positive, char negative) {
    const long long thousandths = std::llround(std::abs(degrees) * 60'000.0);
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%lld %02lld.%03lld %c", thousandths / 60'000, thousandths % 60'000 / 1'000,
                  thousandths % 1'000, degrees < 0.0 ? negative : positive);
    return text.data();
}

} // namespace

FeedHost::FeedHost(platform::Platform& platform, std::unique_ptr<platform::HostWindow> window, Report report,
                   Values values)
    : core_(platform, values == Values::Calibrated), sink_(core_.values()), window_(std::move(window)),
      report_(std::move(report)) {
    if (!ready()) return;
    core_.system().setInteger(system_integer::kFixMode, kFixesFromClients);
    // The window first: a player that still runs sees it and ends.
    if (window_) writeOnce(core_.area()->hostWindow, window_->handle());
    if (endReplay(core_.values())) report_("a recording was played here (REPLAY); its values have been taken out");
}

FeedHost::~FeedHost() {
    if (!ready() || !window_) return;
    if (readOnce(core_.area()->hostWindow) == window_->handle()) writeOnce(core_.area()->hostWindow, 0);
}

void FeedHost::poll() {
    constexpr int kMostAtOnce = 32; // so that a flood of messages doesn't keep the feed from its lines
    if (!ready() || !window_) return;
    // Another host may have put its window there meanwhile, and taken it away when it ended.
    if (readOnce(core_.area()->hostWindow) == 0) writeOnce(core_.area()->hostWindow, window_->handle());
    for (int count = 0; count < kMostAtOnce; ++count) {
        const auto message = window_->poll();
        if (!message) return;
        if (*message == kMobMessage) reportManOverboard();
    }
}

void FeedHost::reportManOverboard() const {
    const MobMark& mark = core_.area()->mob;
    const double latitude = readOnce(mark.latitude);
    const double longitude = readOnce(mark.longitude);
    const bool known = std::abs(latitude) <= 90.0 && std::abs(longitude) <= 360.0;
    report_(known ? "MAN OVERBOARD at " + angleText(latitude, 'N', 'S') + ", " + angleText(longitude, 'E', 'W')
                  : std::string("MAN OVERBOARD, position not known"));
}

} // namespace tallowmere::feed

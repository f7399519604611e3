#include "tools/commands/watch.hpp"

#include "tools/commands/client.hpp"
#include "tools/commands/replay_mark.hpp"
#include "tools/commands/watch_all.hpp"
#include "tools/commands/watch_display.hpp"

#include <algorithm>
#include <memory>

namespace tallowmere::tools {
namespace {

constexpr ChannelIndex kUsualChannels[] = {ZAN_BSP, ZAN_AWA, ZAN_AWS, ZAN_TWA, ZAN_TWS,   ZAN_TWD, ZAN_HDG,
                                           ZAN_COG, ZAN_SOG, ZAN_LAT, ZAN_LON, ZAN_DEPTH, ZAN_HEEL};
constexpr unsigned kLongestSleep = 50; // milliseconds; so soon a request to end is heard

/// Sleeps in short pieces, at most kLongestInterval in all. False when the user asked to end meanwhile.
bool pause(const CommandContext& context, double seconds) {
    auto left = static_cast<unsigned>(seconds * 1000.0);
    while (left > 0 && !context.stop) {
        const unsigned piece = std::min(left, kLongestSleep);
        context.platform.sleepMilliseconds(piece);
        left -= piece;
    }
    return !context.stop;
}

std::unique_ptr<WatchDisplay> makeDisplay(const CommandContext& context, const WatchOptions& options) {
    if (options.json) return std::make_unique<JsonLines>(context.out, options.boat);
    if (context.terminal) return std::make_unique<LiveTable>(context.out, context.columns);
    return std::make_unique<ChangeLines>(context.out);
}

} // namespace

int runWatch(const CommandContext& context, const WatchOptions& options) {
    if (!(options.intervalSeconds >= kShortestInterval && options.intervalSeconds <= kLongestInterval)) {
        context.err << "tallowmere: the interval must be 0.05 to 3600 seconds\n";
        return exit_code::kUsage;
    }
    if (options.all && context.terminal && !options.json) return runWatchAll(context, options);
    Client client(context);
    if (!client.isConnected()) return exit_code::kSystem;
    auto channels = client.find(options.channels);
    if (!channels) return exit_code::kNotFound;
    if (channels->empty()) channels->assign(std::begin(kUsualChannels), std::end(kUsualChannels));

    const auto display = makeDisplay(context, options);
    for (std::int64_t round = 1;; ++round) {
        const std::int64_t now = context.platform.now();
        std::vector<Reading> readings = options.all ? readEverything(client.area(), options.boat, now)
                                                    : readAll(client.area(), *channels, options.boat, now);
        display->show(
            {boatTitle(client.area(), options.boat), now, std::move(readings), isReplay(client.area()), options.all});
        context.out.flush();
        // The reader of a pipe may have gone.
        if (!context.out || round == options.count || !pause(context, options.intervalSeconds)) break;
    }
    return exit_code::kDone;
}

} // namespace tallowmere::tools

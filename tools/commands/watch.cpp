#include "tools/commands/watch.hpp"

#include "core/channels/replay_sign.hpp"
#include "tools/commands/channel_finder.hpp"
#include "tools/commands/no_section.hpp"
#include "tools/commands/watch_all.hpp"
#include "tools/commands/watch_display.hpp"
#include "view/section_reader.hpp"

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

WatchRound lookOnce(const SharedArea* area, const WatchOptions& options, const std::vector<ChannelIndex>& channels,
                    std::int64_t now) {
    WatchRound round{boatTitle(area, options.boat), now, {}, isReplay(area), options.all, area != nullptr};
    round.readings = options.all ? readEverything(area, options.boat, now) : readAll(area, channels, options.boat, now);
    round.replay = round.replay || isReplay(area); // it may have begun meanwhile
    return round;
}

std::unique_ptr<WatchDisplay> makeDisplay(const CommandContext& context, const WatchOptions& options) {
    if (options.json) return std::make_unique<JsonLines>(context.out, options.boat);
    if (context.terminal) return std::make_unique<LiveTable>(context.out, context.columns);
    return std::make_unique<ChangeLines>(context.out);
}

void showRounds(const CommandContext& context, const WatchOptions& options, const std::vector<ChannelIndex>& channels,
                SectionReader& section) {
    const auto display = makeDisplay(context, options);
    for (std::int64_t round = 1;; ++round) {
        (void)section.refresh();
        display->show(lookOnce(section.area(), options, channels, context.platform.now()));
        context.out.flush();
        // The reader of a pipe may have gone.
        if (!context.out || round == options.count || !pause(context, options.intervalSeconds)) break;
    }
}

} // namespace

int runWatch(const CommandContext& context, const WatchOptions& options) {
    if (!(options.intervalSeconds >= kShortestInterval && options.intervalSeconds <= kLongestInterval)) {
        context.err << "tallowmere: the interval must be 0.05 to 3600 seconds\n";
        return exit_code::kUsage;
    }
    if (options.all && context.terminal && !options.json) return runWatchAll(context, options);
    SectionReader section(context.platform);
    auto channels = findOrTell(section.area(), options.channels, context.err, "tallowmere");
    if (!channels) return exit_code::kNotFound;
    if (channels->empty()) channels->assign(std::begin(kUsualChannels), std::end(kUsualChannels));
    const bool waits = section.area() == nullptr && options.count != 1;
    if (waits && !context.terminal) tellNoSection(context, "; waiting");
    showRounds(context, options, *channels, section);
    if (section.generation() > 0) return exit_code::kDone;
    return waits && !context.terminal ? exit_code::kNotFound : tellNoSection(context);
}

} // namespace tallowmere::tools

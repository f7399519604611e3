#include "tools/commands/set.hpp"

#include "core/channels/channel_lookup.hpp"
#include "core/channels/system_values.hpp"
#include "tools/commands/channel_finder.hpp"
#include "tools/commands/client.hpp"
#include "tools/commands/json_output.hpp"
#include "tools/commands/reading_table.hpp"
#include "tools/commands/text.hpp"

#include <nlohmann/json.hpp>

#include <charconv>
#include <cmath>

namespace tallowmere::tools {
namespace {

/// A value that was taken but did not stay: the channel's range or kind can't hold it.
std::string whyCleared(const SharedArea* area, ChannelIndex channel) {
    const ChannelDef& row = kCatalogue[channel];
    if (storageKindOf(area, channel) != StorageKind::Double) return "this channel can't hold such a value";
    if (row.minValue == row.maxValue) return "another program cleared it";
    return "it is outside the plausible range " + std::to_string(row.minValue) + " to " + std::to_string(row.maxValue);
}

} // namespace

std::optional<double> parseValue(std::string_view text) {
    if (lowerCased(text) == "none") return NO_VALUE;
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(value)) return std::nullopt;
    return value;
}

std::string refusalOf(const Context& context, ChannelIndex channel, BoatIndex boat) {
    if (channel == ZAN_TIME) return "it is the clock, which the library sets itself";
    const ChannelDef& row = kCatalogue[channel];
    if (boat == 0 && row.ownBoatProtected != 0 && !SystemValues(context.area).inMode(kFixesFromClients, 0))
        return "it belongs to the own boat's satellite fix, which is protected while system integer 6 is not 3; "
               "a host such as \"tallowmere feed\" sets that";
    if (context.area == nullptr) return "there is no shared data";
    const ChannelSetting& setting = context.area->settings[channel];
    if (readOnce(setting.blocked) != 0) return "the channel is blocked, because a program computes it";
    if (readOnce(setting.writeLockable) != 0 && SystemValues(context.area).flag(system_flag::kWriteLock) != 0)
        return "the channel is locked while system flag 52 is set";
    if (boat >= kFullBoatCount && row.compactIndex == kNone16) return "it is kept for boats 0 and 1 only";
    return {};
}

int runSet(const CommandContext& context, const SetOptions& options) {
    const std::optional<double> value = parseValue(options.value);
    if (!value) {
        context.err << "tallowmere: \"" << printable(options.value)
                    << "\" is no value; give a number such as 6.4, -12 or 50.766, or none\n";
        return exit_code::kUsage;
    }
    Client client(context);
    if (!client.isConnected()) return exit_code::kSystem;
    const auto channels = findOrTell(client.area(), {options.channel}, context.err, "tallowmere");
    if (!channels) return exit_code::kNotFound;
    const ChannelIndex channel = channels->front();
    const std::string name = nameOf(client.area(), channel);

    const std::string refusal = refusalOf(client.values().context(), channel, options.boat);
    const Record record = client.values().doubleToRecord(channel, *value).record;
    if (!refusal.empty() || !client.values().store(channel, record, options.boat, kNoTime)) {
        context.err << "tallowmere: " << name << " of boat " << options.boat << " was not written: "
                    << (refusal.empty() ? "the channel was blocked or locked meanwhile" : refusal) << '\n';
        return exit_code::kNotFound;
    }
    client.warnWhenAlone();
    if (isAlternating(channel))
        context.err << "tallowmere: readers of " << name << " see the channel that it stands for, not this value\n";
    if (*value != NO_VALUE && !client.values().fetch(channel, options.boat).holdsValue) {
        context.err << "tallowmere: " << name << " of boat " << options.boat
                    << " has no value now: " << whyCleared(client.area(), channel) << '\n';
        return exit_code::kNotFound;
    }
    const Reading stored = readChannel(client.area(), channel, options.boat, context.platform.now());
    if (options.json)
        writeJson(context.out, jsonOf(stored, options.boat));
    else
        context.out << readingTable({stored}, false).text();
    return exit_code::kDone;
}

} // namespace tallowmere::tools

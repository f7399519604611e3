#include "tools/commands/get.hpp"

#include "tools/commands/client.hpp"
#include "tools/commands/json_output.hpp"
#include "tools/commands/reading_table.hpp"
#include "tools/commands/replay_mark.hpp"

#include <nlohmann/json.hpp>

namespace tallowmere::tools {
namespace {

Json answer(const std::vector<Reading>& readings, BoatIndex boat, std::int64_t now, bool replay) {
    Json channels = Json::array();
    for (const Reading& reading : readings) channels.push_back(jsonOf(reading, boat));
    return {{"read_at", jsonMoment(now)}, {"boat", boat}, {"replay", replay}, {"channels", std::move(channels)}};
}

} // namespace

int runGet(const CommandContext& context, const GetOptions& options) {
    Client client(context);
    if (!client.isConnected()) return exit_code::kSystem;
    const auto channels = client.find(options.channels);
    if (!channels) return exit_code::kNotFound;
    client.warnWhenAlone();
    if (isReplay(client.area()))
        context.err << "tallowmere: a recording is being played (REPLAY); these values are not live\n";

    const std::int64_t now = context.platform.now();
    const auto readings = readAll(client.area(), *channels, options.boat, now);
    if (options.json)
        writeJson(context.out, answer(readings, options.boat, now, isReplay(client.area())));
    else
        context.out << readingTable(readings, false).text();
    return exit_code::kDone;
}

} // namespace tallowmere::tools

#include "tools/commands/get.hpp"

#include "core/channels/replay_sign.hpp"
#include "tools/commands/channel_finder.hpp"
#include "tools/commands/json_output.hpp"
#include "tools/commands/no_section.hpp"
#include "tools/commands/reading_table.hpp"
#include "view/section_reader.hpp"

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
    const SectionReader section(context.platform);
    const SharedArea* const area = section.area();
    const auto channels = findOrTell(area, options.channels, context.err, "tallowmere");
    if (!channels) return exit_code::kNotFound;
    if (area == nullptr) return tellNoSection(context);
    const std::int64_t now = context.platform.now();
    bool replay = isReplay(area);
    const auto readings = readAll(area, *channels, options.boat, now);
    replay = replay || isReplay(area); // it may have begun meanwhile
    if (replay) context.err << "tallowmere: a recording is being played (REPLAY); these values are not live\n";
    if (options.json)
        writeJson(context.out, answer(readings, options.boat, now, replay));
    else
        context.out << readingTable(readings, false).text();
    return exit_code::kDone;
}

} // namespace tallowmere::tools

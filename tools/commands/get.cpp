#include "tools/commands/get.hpp"

#include "tools/commands/client.hpp"
#include "tools/commands/reading_table.hpp"
#include "tools/commands/replay_mark.hpp"

namespace tallowmere::tools {

int runGet(const CommandContext& context, const GetOptions& options) {
    Client client(context);
    if (!client.isConnected()) return exit_code::kSystem;
    const auto channels = client.find(options.channels);
    if (!channels) return exit_code::kNotFound;
    client.warnWhenAlone();
    if (isReplay(client.area()))
        context.err << "tallowmere: a recording is being played (REPLAY); these values are not live\n";

    const auto readings = readAll(client.area(), *channels, options.boat, context.platform.now());
    context.out << readingTable(readings, false).text();
    return exit_code::kDone;
}

} // namespace tallowmere::tools

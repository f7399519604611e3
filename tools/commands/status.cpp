#include "tools/commands/status.hpp"

#include "core/channels/replay_sign.hpp"
#include "core/channels/section_name.hpp"
#include "tools/commands/json_output.hpp"
#include "tools/commands/reading.hpp"
#include "tools/commands/text.hpp"
#include "view/section_reader.hpp"

#include <nlohmann/json.hpp>

#include <array>
#include <cstdio>
#include <string>

namespace tallowmere::tools {
namespace {

/// Channels by freshness. The clock is no datum and not counted.
struct Counts {
    int live = 0;
    int stale = 0;
    int none = 0;
};

Counts countBoat(const SharedArea& area, BoatIndex boat, std::int64_t now) {
    Counts counts;
    for (ChannelIndex channel = ZAN_TIME + 1; channel < kChannelCount; ++channel) {
        const auto stamp = stampOf(&area, channel, boat);
        if (!stamp) continue; // not kept for this boat
        // Boat 1's records start as zeros, which read as values; a stamp of zero tells that none was written.
        const Freshness freshness = *stamp == 0 ? Freshness::None : freshnessOf(&area, channel, boat, now);
        if (isLive(freshness)) ++counts.live;
        if (freshness == Freshness::Stale) ++counts.stale;
        if (freshness == Freshness::None) ++counts.none;
    }
    return counts;
}

std::string countsText(const Counts& counts) {
    return std::to_string(counts.live) + " channels live, " + std::to_string(counts.stale) + " stale, " +
           std::to_string(counts.none) + " without a value";
}

/// What there is to tell, read once.
struct Status {
    std::string section; // its name
    std::string maker;   // empty: unknown
    bool replay = false;
    std::uint64_t hostWindow = 0;
    std::uint32_t boats = 0;
    std::string dataFolder;
    std::string database;
    std::string marks;
    Counts ownBoat;
    Counts otherBoats;
    std::uint32_t liveBoats = 0; // of the others
};

Status statusOf(const SharedArea& area, std::int64_t now) {
    Status status;
    status.replay = isReplay(&area);
    status.hostWindow = readOnce(area.hostWindow);
    status.boats = boatsInUse(area);
    status.dataFolder = printable(readText(area.dataFolder));
    status.database = printable(readText(area.databasePath));
    status.marks = printable(readText(area.marksPath));
    status.ownBoat = countBoat(area, 0, now);
    for (BoatIndex boat = 1; boat < status.boats; ++boat) {
        const Counts counts = countBoat(area, boat, now);
        status.otherBoats.live += counts.live;
        status.otherBoats.stale += counts.stale;
        status.otherBoats.none += counts.none;
        if (counts.live > 0) ++status.liveBoats;
    }
    return status;
}

std::string otherBoatsText(const Status& status) {
    if (status.boats <= 1) return "none";
    return std::to_string(status.liveBoats) + " of " + std::to_string(status.boats - 1) +
           " live: " + countsText(status.otherBoats);
}

std::string hexadecimal(std::uint64_t number) {
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "0x%llX", static_cast<unsigned long long>(number));
    return text.data();
}

void writeText(std::ostream& out, const Status& status) {
    const auto orElse = [](const std::string& text, const char* other) { return text.empty() ? other : text; };
    out << "Section      " << status.section << ", made by " << orElse(status.maker, "an unknown user") << '\n';
    if (status.replay) out << "State        REPLAY: a recording is being played, nothing here is live\n";
    out << "Host         "
        << (status.hostWindow == 0 ? "none (nobody receives a man-overboard call)"
                                   : "window " + hexadecimal(status.hostWindow))
        << '\n'
        << "Boats        " << status.boats << '\n'
        << "Data folder  " << orElse(status.dataFolder, "-") << '\n'
        << "Database     " << orElse(status.database, "-") << '\n'
        << "Marks        " << orElse(status.marks, "-") << '\n'
        << "Own boat     " << countsText(status.ownBoat) << '\n'
        << "Other boats  " << otherBoatsText(status) << '\n';
}

Json jsonOf(const Counts& counts) {
    return {{"live", counts.live}, {"stale", counts.stale}, {"none", counts.none}};
}

Json jsonOf(const Status& status) {
    return {{"section", status.section},
            {"present", true},
            {"maker", jsonText(status.maker)},
            {"replay", status.replay},
            {"host_window", status.hostWindow == 0 ? Json() : Json(hexadecimal(status.hostWindow))},
            {"boats", status.boats},
            {"data_folder", jsonText(status.dataFolder)},
            {"database", jsonText(status.database)},
            {"marks", jsonText(status.marks)},
            {"own_boat", jsonOf(status.ownBoat)},
            {"other_boats_live", status.liveBoats},
            {"other_boats", jsonOf(status.otherBoats)}};
}

/// All fields are there, so that a reader needs no case of its own.
Json jsonOfNone(const std::string& section) {
    Json json = jsonOf(Status{});
    for (auto& [name, value] : json.items()) value = nullptr;
    json["section"] = section;
    json["present"] = false;
    return json;
}

} // namespace

int runStatus(const CommandContext& context, bool json) {
    const SectionReader section(context.platform);
    const std::string name = printable(sectionName());
    if (section.area() == nullptr) {
        if (json)
            writeJson(context.out, jsonOfNone(name));
        else
            context.out << "Section      none (" << name << " is there while a program that uses it runs)\n";
        return exit_code::kNotFound;
    }
    Status status = statusOf(*section.area(), context.platform.now());
    status.section = name;
    status.maker = printable(section.maker());
    if (json)
        writeJson(context.out, jsonOf(status));
    else
        writeText(context.out, status);
    return exit_code::kDone;
}

} // namespace tallowmere::tools

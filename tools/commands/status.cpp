#include "tools/commands/status.hpp"

#include "core/channels/section_name.hpp"
#include "tools/commands/reading.hpp"
#include "tools/commands/replay_mark.hpp"
#include "tools/commands/text.hpp"
#include "view/section_reader.hpp"

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

std::string otherBoats(const SharedArea& area, std::uint32_t boats, std::int64_t now) {
    Counts total;
    std::uint32_t liveBoats = 0;
    for (BoatIndex boat = 1; boat < boats; ++boat) {
        const Counts counts = countBoat(area, boat, now);
        total.live += counts.live;
        total.stale += counts.stale;
        total.none += counts.none;
        if (counts.live > 0) ++liveBoats;
    }
    if (boats <= 1) return "none";
    return std::to_string(liveBoats) + " of " + std::to_string(boats - 1) + " live: " + countsText(total);
}

std::string hostText(const SharedArea& area) {
    const std::uint64_t window = readOnce(area.hostWindow);
    if (window == 0) return "none (nobody receives a man-overboard call)";
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "window 0x%llX", static_cast<unsigned long long>(window));
    return text.data();
}

template <std::size_t Size> std::string textOrDash(const char16_t (&field)[Size]) {
    const std::string text = printable(readText(field));
    return text.empty() ? "-" : text;
}

} // namespace

int runStatus(const CommandContext& context) {
    const SectionReader section(context.platform);
    const std::string name = printable(sectionName());
    if (section.area() == nullptr) {
        context.out << "Section      none (" << name << " is there while a program that uses it runs)\n";
        return exit_code::kNotFound;
    }
    const SharedArea& area = *section.area();
    const std::string maker = printable(section.maker());
    const std::uint32_t boats = boatsInUse(area);
    const std::int64_t now = context.platform.now();
    context.out << "Section      " << name << ", made by " << (maker.empty() ? "an unknown user" : maker) << '\n';
    if (isReplay(&area)) context.out << "State        REPLAY: a recording is being played, nothing here is live\n";
    context.out << "Host         " << hostText(area) << '\n'
                << "Boats        " << boats << '\n'
                << "Data folder  " << textOrDash(area.dataFolder) << '\n'
                << "Database     " << textOrDash(area.databasePath) << '\n'
                << "Marks        " << textOrDash(area.marksPath) << '\n'
                << "Own boat     " << countsText(countBoat(area, 0, now)) << '\n'
                << "Other boats  " << otherBoats(area, boats, now) << '\n';
    return exit_code::kDone;
}

} // namespace tallowmere::tools

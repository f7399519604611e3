#include "tools/feed/feed.hpp"

#include "tools/feed/sentence_rules.hpp"
#include "tools/nmea/field.hpp"

#include <algorithm>

namespace tallowmere::feed {
namespace {

using nmea::LineKind;

/// Text of strangers on its way to the user's terminal.
std::string printable(std::string_view text, std::size_t most) {
    std::string copy(text.substr(0, most));
    std::replace_if(
        copy.begin(), copy.end(), [](char character) { return character < 0x20 || character > 0x7E; }, '.');
    if (text.size() > most) copy += "...";
    return copy;
}

} // namespace

void Feed::take(const nmea::Line& line) {
    const nmea::LineReading reading = nmea::readLine(line);
    ++counts_.lines;
    ++counts_.byKind[static_cast<std::size_t>(reading.kind)];
    rememberDamage(line, reading);
    if (!reading.usable()) return;
    if (reading.kind == LineKind::Merged) ++counts_.mergedUsed;
    takeSentence(nmea::Sentence(reading.start, reading.body));
}

void Feed::takeSentence(const nmea::Sentence& sentence) {
    const SentenceRule rule = ruleFor(sentence);
    const bool vdm = sentence.isStandard() && sentence.start() == '!' && sentence.type() == "VDM";
    if (rule == nullptr && !vdm) {
        countUnknown(sentence);
        return;
    }
    ++counts_.used[std::string(sentence.type())];
    if (vdm)
        takeVdm(sentence);
    else if (!rule(sentence, own_))
        ++counts_.invalid;
}

void Feed::takeVdm(const nmea::Sentence& sentence) {
    const nmea::AisReading reading = nmea::readVdm(sentence);
    switch (reading.outcome) {
    case nmea::AisOutcome::Report:
        ++counts_.aisReports[reading.type];
        takeReport(reading.report);
        break;
    case nmea::AisOutcome::OtherType:
        ++counts_.aisNotUsed[reading.type];
        break;
    case nmea::AisOutcome::Continuation:
        ++counts_.aisParts;
        break;
    case nmea::AisOutcome::Damaged:
        ++counts_.aisDamaged;
        break;
    }
}

void Feed::takeReport(const nmea::PositionReport& report) {
    const std::optional<BoatIndex> boat = sink_.boatFor(report.mmsi);
    if (!boat) {
        ++counts_.aisNoRoom;
        return;
    }
    if (*boat == 0) {
        ++counts_.aisOwnBoat;
        return;
    }
    if (boatsSeen_.insert(*boat).second) ++counts_.boats;
    const auto write = [&](ChannelIndex channel, std::optional<double> value) {
        writeValue(sink_, counts_, channel, value, *boat);
    };
    write(ZAN_LAT, report.latitude);
    write(ZAN_LON, report.longitude);
    write(ZAN_COG, report.cog);
    write(ZAN_SOG, report.sog);
    write(ZAN_HDG, report.heading);
}

void Feed::countUnknown(const nmea::Sentence& sentence) {
    constexpr std::size_t kLongestName = 16;
    std::string name = printable(sentence.type(), kLongestName);
    if (name.empty()) name = "(no name)";
    const auto known = counts_.unknown.find(name);
    if (known != counts_.unknown.end())
        ++known->second;
    else if (counts_.unknown.size() < FeedCounts::kNamesKept)
        counts_.unknown.emplace(name, 1);
    else
        ++counts_.otherUnknown;
}

void Feed::rememberDamage(const nmea::Line& line, const nmea::LineReading& reading) {
    constexpr std::size_t kExcerpt = 60;
    const bool harmless =
        reading.kind == LineKind::Sentence || reading.kind == LineKind::Text || reading.kind == LineKind::NoChecksum;
    if (harmless || counts_.of(reading.kind) > FeedCounts::kDamagedKept) return;
    counts_.damaged.push_back({line.number, reading.kind, printable(line.text, kExcerpt)});
}

std::optional<double> timeIn(const nmea::Line& line) noexcept {
    const nmea::LineReading reading = nmea::readLine(line);
    if (!reading.usable()) return std::nullopt;
    const nmea::Sentence sentence(reading.start, reading.body);
    const std::string_view type = sentence.type();
    if (!sentence.isStandard()) return std::nullopt;
    if (type == "RMC" || type == "ZDA" || type == "GGA") return nmea::timeOfDay(sentence.field(0));
    return type == "GLL" ? nmea::timeOfDay(sentence.field(4)) : std::nullopt;
}

} // namespace tallowmere::feed

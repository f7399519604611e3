#include "tools/feed/summary.hpp"

namespace tallowmere::feed {
namespace {

using nmea::LineKind;

std::string_view wordFor(LineKind kind) {
    switch (kind) {
    case LineKind::Merged:
        return "merged";
    case LineKind::BadChecksum:
        return "bad checksum";
    case LineKind::Cut:
        return "cut";
    case LineKind::Binary:
        return "binary bytes";
    case LineKind::TooLong:
        return "too long";
    default:
        return "damaged";
    }
}

/// "RMC 1,105, VHW 2,212"
std::string listOf(const std::map<std::string, std::uint64_t>& counts) {
    std::string text;
    for (const auto& [name, count] : counts) {
        if (!text.empty()) text += ", ";
        text += name + " " + grouped(count);
    }
    return text;
}

std::string listOfTypes(const std::map<int, std::uint64_t>& counts) {
    std::string text;
    for (const auto& [type, count] : counts) {
        if (!text.empty()) text += ", ";
        text += "type " + std::to_string(type) + " " + grouped(count);
    }
    return text;
}

std::uint64_t totalOf(const auto& counts) {
    std::uint64_t total = 0;
    for (const auto& entry : counts) total += entry.second;
    return total;
}

class Lines {
  public:
    void add(std::string_view label, const std::string& text) {
        if (!text_.empty()) text_ += '\n';
        text_ += "  ";
        text_ += label;
        text_.append(label.size() < kColumn ? kColumn - label.size() : 1, ' ');
        text_ += text;
    }
    void addCount(std::string_view label, std::uint64_t count, std::string_view note = {}) {
        if (count == 0) return;
        std::string text = grouped(count);
        if (!note.empty()) text.append("  (").append(note).append(")");
        add(label, text);
    }
    [[nodiscard]] std::string take() { return std::move(text_); }

  private:
    static constexpr std::size_t kColumn = 20;
    std::string text_;
};

void addLineCounts(Lines& lines, const FeedCounts& counts) {
    lines.add("lines", grouped(counts.lines));
    const std::uint64_t used = totalOf(counts.used);
    lines.add("sentences used", grouped(used) + (used != 0 ? "  (" + listOf(counts.used) + ")" : ""));
    lines.addCount("not valid", counts.invalid, "of those, by their own status: nothing written");
    const std::uint64_t unknown = totalOf(counts.unknown) + counts.otherUnknown;
    std::string names = listOf(counts.unknown);
    if (counts.otherUnknown != 0) names += ", others " + grouped(counts.otherUnknown);
    lines.addCount("unknown", unknown, names);
    lines.addCount("damaged", counts.damagedLines(),
                   "bad checksum " + grouped(counts.of(LineKind::BadChecksum)) + ", cut " +
                       grouped(counts.of(LineKind::Cut)) + ", binary " + grouped(counts.of(LineKind::Binary)) +
                       ", too long " + grouped(counts.of(LineKind::TooLong)));
    lines.addCount("merged", counts.of(LineKind::Merged),
                   grouped(counts.mergedUsed) + " with a whole sentence at the end, which was used");
    lines.addCount("without checksum", counts.of(LineKind::NoChecksum), "not used");
    lines.addCount("other text", counts.of(LineKind::Text));
}

void addAisCounts(Lines& lines, const FeedCounts& counts) {
    const std::uint64_t reports = totalOf(counts.aisReports);
    lines.addCount("AIS reports", reports, listOfTypes(counts.aisReports));
    lines.addCount("AIS boats", counts.boats);
    lines.addCount("AIS not used", totalOf(counts.aisNotUsed) + counts.aisParts,
                   listOfTypes(counts.aisNotUsed) +
                       (counts.aisParts != 0 ? ", later parts " + grouped(counts.aisParts) : std::string()));
    lines.addCount("AIS damaged", counts.aisDamaged);
    lines.addCount("AIS own boat", counts.aisOwnBoat, "its own instruments are used instead");
    lines.addCount("AIS without place", counts.aisNoRoom, "all boats 1 to 99 are taken");
}

void addValueCounts(Lines& lines, const FeedCounts& counts) {
    lines.add("values written", grouped(counts.written));
    lines.addCount("implausible", counts.implausible, "values that can't be: not written");
    lines.addCount("refused", counts.refused, "blocked or locked channels");
    lines.addCount("no variation", counts.withoutVariation, "magnetic bearings while no variation was known");
}

} // namespace

std::string grouped(std::uint64_t number) {
    std::string text = std::to_string(number);
    for (std::size_t place = text.size(); place > 3; place -= 3) text.insert(place - 3, 1, ',');
    return text;
}

std::string progressText(const FeedCounts& counts) {
    std::string text = grouped(counts.lines) + " lines, " + grouped(counts.written) + " values";
    if (counts.boats != 0) text += ", " + grouped(counts.boats) + (counts.boats == 1 ? " boat" : " boats");
    const std::uint64_t bad = counts.damagedLines() + counts.of(LineKind::Merged);
    if (bad != 0) text += ", " + grouped(bad) + " damaged";
    return text;
}

std::string summaryText(const FeedCounts& counts, std::string_view source) {
    Lines lines;
    addLineCounts(lines, counts);
    addAisCounts(lines, counts);
    addValueCounts(lines, counts);
    std::string text = lines.take();
    for (const DamagedLine& damaged : counts.damaged) {
        text.append("\n  ").append(source).append(":").append(std::to_string(damaged.number)).append(": ");
        text.append(wordFor(damaged.kind)).append(": ").append(damaged.excerpt);
    }
    return text;
}

} // namespace tallowmere::feed

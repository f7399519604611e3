#include "tests/faults/life.hpp"

#include "settings/reg_ex.hpp"
#include "settings/track_settings.hpp"

#include <filesystem>

namespace tallowmere::test {
namespace {

std::string plain(std::u16string_view text) {
    return std::filesystem::path(text).string();
}

void addUsersCalibration(MemoryMachine& machine) {
    for (const std::size_t item : {2U, 5U, 8U, 19U}) machine.addDword(kCalibrationKey, numbered(u"CalUse_", item), 1);
    machine.addDword(kCalibrationKey, u"CalUse_16", 0);
    machine.addDword(kCalibrationKey, u"CalLinear_2", 1);
    machine.addString(kCalibrationKey, u"CalFile_8", u"E:\\own heading.txt");
    machine.addFile(u"E:\\own heading.txt", "0\n0 3\n");
    machine.addFile(u"D:\\Race\\calibration\\ZAN_CAL_Bsp.txt", "0 5 10\n0 0.5 1 1.5\n20 1 2 3\n");
    machine.addFile(u"D:\\Race\\calibration\\ZAN_CAL_Awa.txt", "0 45 90 135 180\n5 1 2 3 2 1\n10 2 3 4 3 2\n");
    machine.addFile(u"D:\\Race\\calibration\\ZAN_CAL_Baro.txt", "900 1.5 1000 2.5\n");
}

/// A field of the section: its name and where it lies.
struct Field {
    std::string name;
    std::size_t offset;
    std::size_t size; // bytes
    bool isText = false;
};

void addSettings(std::vector<Field>& fields) {
    for (std::size_t i = 0; i < 80; ++i)
        fields.push_back({"settings/variable " + std::to_string(i), place::variable(i), 8});
    for (std::size_t i = 0; i < 60; ++i) fields.push_back({"settings/flag " + std::to_string(i), place::flag(i), 1});
    for (std::size_t i = 0; i < 13; ++i)
        fields.push_back({"settings/integer " + std::to_string(i), place::integer(i), 4});
    fields.push_back({"settings/data folder", place::kDataFolder, 520, true});
    fields.push_back({"settings/database", place::kDatabasePath, 520, true});
    fields.push_back({"settings/marks", place::kMarksPath, 520, true});
}

void addFiles(std::vector<Field>& fields) {
    for (std::size_t boat = 0; boat < 100; ++boat) {
        const std::string name = "boats/" + std::to_string(boat);
        fields.push_back({name + " name", place::boatName(boat), 64, true});
        fields.push_back({name + " mmsi", place::mmsi(boat), 4});
        fields.push_back({name + " colour", place::colour(boat), 4});
    }
    for (std::size_t channel = 0; channel < 414; ++channel) {
        const std::string name = std::to_string(channel);
        fields.push_back({"channels/" + name + " log", place::log(channel), 1});
        fields.push_back({"channels/" + name + " precision, damping, class", place::precision(channel), 6});
        fields.push_back({"channels/" + name + " long name", place::longName(channel), 64, true});
        fields.push_back({"channels/" + name + " short name", place::shortName(channel), 32, true});
        fields.push_back({"blocked/" + name, place::blocked(channel), 1});
        fields.push_back({"calibration/flag " + name, place::calibrate(channel), 1});
    }
    for (std::size_t row = 0; row < 10; ++row)
        for (std::size_t column = 0; column < 9; ++column)
            fields.push_back({"alternate/" + std::to_string(row) + "," + std::to_string(column),
                              place::alternateCell(row, column), 4});
}

const std::vector<Field>& allFields() {
    static const std::vector<Field> fields = [] {
        std::vector<Field> all;
        addSettings(all);
        addFiles(all);
        return all;
    }();
    return fields;
}

/// A field's bytes as they count: of a text what is before its end.
std::string_view bytesOf(const Field& field, const std::vector<std::uint8_t>& section) {
    const auto* const first = reinterpret_cast<const char*>(section.data() + field.offset);
    std::size_t size = field.size;
    for (std::size_t i = 0; field.isText && i < field.size; i += 2)
        if (first[i] == 0 && first[i + 1] == 0) {
            size = i;
            break;
        }
    return {first, size};
}

bool isAsIn(const Field& field, const Outcome& one, const Outcome& other) {
    if (one.section.empty() || other.section.empty()) return one.section.empty() == other.section.empty();
    return bytesOf(field, one.section) == bytesOf(field, other.section);
}

std::string tableText(const CalibrationTable& table) {
    std::string text;
    for (const CurveRow& row : table.rows) {
        text += std::to_string(row.rowValue) + ":";
        for (const CurveKnot& knot : row.knots) text += " " + std::to_string(knot.x) + "=" + std::to_string(knot.y);
        text += row.dirty != 0 ? " dirty; " : "; ";
    }
    return text;
}

void seeCalibration(const Calibration& calibration, std::map<std::string, std::string>& seen) {
    for (std::size_t id = 0; id < kCalibrationItemCount; ++id) {
        const CalibrationItem& item = calibration.items()[id];
        const std::string name = "calibration/" + std::to_string(id);
        seen[name + " use"] = std::to_string(item.use);
        seen[name + " linear"] = std::to_string(item.table.linear);
        seen[name + " table"] = tableText(item.table);
        seen[name + " file"] = plain(item.file);
        seen[name + " name"] = plain(item.name);
        seen[name + " unit"] = plain(item.unit);
    }
}

void seeKey(const MemoryMachine& machine, const char16_t* key, const std::string& group,
            std::map<std::string, std::string>& seen) {
    const auto found = machine.settings.find(key);
    if (found == machine.settings.end()) return;
    for (const auto& [name, value] : found->second)
        if (group != "location" || name == u"Location") seen[group + "/" + plain(name)] = value.bytes;
}

} // namespace

Life::Life(bool withUser) {
    machine.trace.reserve(10'000);
    if (!withUser) return;
    addUsersSettings(machine);
    addUsersFiles(machine);
    addUsersCalibration(machine);
}

void Life::attach() {
    host = std::make_unique<CCore>(platform, true);
    client = std::make_unique<CCore>(platform, false);
}

void Life::detach() {
    client.reset();
    host.reset();
}

Outcome Life::seen() const {
    Outcome seen;
    if (host->area() != nullptr) seen.section = RawSection(reinterpret_cast<std::byte*>(host->area())).copy();
    seeCalibration(host->calibration(), seen.others);
    seeKey(machine, kCoreSettings, "location", seen.others);
    return seen;
}

Outcome Life::saved() const {
    Outcome seen;
    seeKey(machine, kTrackSettings, "tracks", seen.others);
    return seen;
}

namespace {

/// Texts that stay empty when there is no memory for them: who reads an empty path takes the default.
bool mayBeEmpty(std::string_view name) {
    return name.starts_with("calibration/") || name == "settings/data folder" || name == "settings/database" ||
           name == "settings/marks";
}

} // namespace

std::string entriesOfNone(const Outcome& seen, std::initializer_list<const Outcome*> others) {
    std::string found;
    for (const Field& field : allFields()) {
        if (seen.section.empty()) break;
        const auto fits = [&](const Outcome* other) { return isAsIn(field, seen, *other); };
        if (std::ranges::any_of(others, fits)) continue;
        const std::string_view bytes = bytesOf(field, seen.section);
        if (!bytes.empty() || !mayBeEmpty(field.name)) found += field.name + " is \"" + std::string(bytes) + "\"; ";
    }
    for (const auto& [name, value] : seen.others) {
        const auto fits = [&, &name = name, &value = value](const Outcome* other) {
            const auto entry = other->others.find(name);
            return entry != other->others.end() && entry->second == value;
        };
        if (std::ranges::any_of(others, fits) || (value.empty() && mayBeEmpty(name))) continue;
        found += name + " is " + value + "; ";
    }
    return found;
}

std::map<std::string, int> unlike(const Outcome& seen, const Outcome& other) {
    std::map<std::string, int> groups;
    const auto count = [&groups](const std::string& name) { ++groups[name.substr(0, name.find('/'))]; };
    for (const Field& field : allFields())
        if (!isAsIn(field, seen, other)) count(field.name);
    for (const auto& [name, value] : seen.others) {
        const auto entry = other.others.find(name);
        if (entry == other.others.end() || entry->second != value) count(name);
    }
    for (const auto& [name, value] : other.others)
        if (!seen.others.contains(name)) count(name);
    return groups;
}

std::u16string dataFolderOf(const Outcome& seen) {
    auto section = seen.section;
    return RawSection(reinterpret_cast<std::byte*>(section.data())).text(place::kDataFolder, 260);
}

} // namespace tallowmere::test

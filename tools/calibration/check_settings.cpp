#include "tools/calibration/check_settings.hpp"

#include "calibration/item_table.hpp"
#include "core/channels/system_values.hpp"
#include "core/config/config_document.hpp"
#include "settings/reg_ex.hpp"
#include "tools/calibration/item_text.hpp"
#include "tools/calibration/stored_value.hpp"

#include <cmath>

namespace tallowmere::tools {
namespace {

constexpr std::size_t kLongestPath = kPathCharacters - 1;
constexpr std::size_t kStoredVariables = 18;
constexpr std::size_t kStoredFlags = 34;
constexpr std::size_t kStoredIntegers = 11;

std::u16string seen(const std::u16string& text) {
    return text.substr(0, text.find(u'\0'));
}

void checkLength(StoredValues& values, const std::u16string& name, const std::u16string& text) {
    if (text.size() > kLongestPath)
        values.report(name, "has " + std::to_string(text.size()) + " characters", "it is cut after 259");
}

void checkDataFolder(const platform::Platform& platform, StoredValues& values) {
    const std::u16string name = u"DataFolder";
    const auto folder = values.text(name);
    if (!folder) return;
    if (folder->empty()) return values.report(name, "is empty", "the default folder is used");
    if (!platform.exists(seen(*folder)))
        return values.report(name, inQuotes(*folder) + " does not exist", "the default folder is used");
    if (!platform.isDirectory(seen(*folder)))
        values.report(name, inQuotes(*folder) + " is no folder", "it is taken all the same, and no file is found");
    checkLength(values, name, *folder);
}

void checkDatabase(const platform::Platform& platform, StoredValues& values) {
    const std::u16string name = u"Database2";
    const auto path = values.text(name);
    if (!path) return;
    checkLength(values, name, *path);
    const std::u16string kept = seen(path->substr(0, kLongestPath));
    const std::u16string last = kept.substr(kept.find_last_of(platform.separator() == u'\\' ? u"\\/:" : u"/") + 1);
    if (last.size() <= 3 || !last.ends_with(u".db"))
        values.report(name, inQuotes(*path) + " does not end in \".db\"", "the default database is used");
}

void checkMarks(StoredValues& values) {
    const std::u16string name = u"MarksXml";
    const auto path = values.text(name);
    if (!path) return;
    if (path->empty()) values.report(name, "is empty", "it is ignored");
    checkLength(values, name, *path);
}

void checkVariables(StoredValues& values, SystemValues system) {
    for (std::size_t index = 0; index < kStoredVariables; ++index) {
        const std::u16string name = indexedName(u"Sys_v", index);
        const auto value = values.number(name);
        if (!value) continue;
        system.setVariable(index, *value);
        const double stored = system.variable(index);
        const bool kept = stored == *value || (std::isnan(stored) && std::isnan(*value));
        if (!kept)
            values.report(name, "is " + numberText(*value), "it is held at " + numberText(stored));
        else if (!std::isfinite(stored))
            values.report(name, "is " + numberText(stored), "it is stored as it is");
    }
}

void checkFlags(StoredValues& values) {
    for (std::size_t index = 0; index < kStoredFlags; ++index) {
        const std::u16string name = indexedName(u"Sys_b", index);
        const auto value = values.integer(name);
        if (value && *value != 0 && *value != 1)
            values.report(name, "is " + std::to_string(*value) + ", not 0 or 1", "it counts as 1");
    }
}

void checkIntegers(StoredValues& values, SystemValues system) {
    for (std::size_t index = 0; index < kStoredIntegers; ++index) {
        const std::u16string name = indexedName(u"Sys_i", index);
        const auto value = values.integer(name);
        if (!value) continue;
        system.setInteger(index, *value);
        if (system.integer(index) != *value)
            values.report(name, "is " + std::to_string(*value),
                          "it is held at " + std::to_string(system.integer(index)));
    }
}

/// A family of values whose names end in a number.
struct Numbered {
    std::u16string_view prefix;
    std::size_t count; // 0 to count - 1 are read
};

/// Tells the values whose name only looks like one of the family, a number too large or written otherwise. Any
/// other name may be another program's.
void checkNumbers(StoredValues& values, std::initializer_list<Numbered> families) {
    for (const std::u16string& name : values.names())
        for (const Numbered& family : families) {
            if (name.size() < family.prefix.size() ||
                !equalsIgnoringCase(name.substr(0, family.prefix.size()), family.prefix))
                continue;
            bool known = false;
            for (std::size_t index = 0; index < family.count && !known; ++index)
                known = equalsIgnoringCase(name, indexedName(family.prefix, index));
            if (!known) values.report(name, "is not one of 0 to " + std::to_string(family.count - 1), "it is ignored");
        }
}

void checkItem(const platform::Platform& platform, StoredValues& values, std::size_t id) {
    if (const auto file = values.text(indexedName(u"CalFile_", id)); file && !platform.exists(*file))
        values.report(indexedName(u"CalFile_", id), inQuotes(*file) + " does not exist",
                      "the item's table is empty and gives no correction");
    const auto use = values.integer(indexedName(u"CalUse_", id), true);
    if (id == calibration_item::kRateOfTurn && use && *use == 0)
        values.report(indexedName(u"CalUse_", id), "switches the rate of turn off", "it stays in use all the same");
    (void)values.integer(indexedName(u"CalLinear_", id), true);
}

} // namespace

void checkCoreSettings(const platform::Platform& platform, Findings& findings) {
    StoredValues values(platform, kCoreKey, findings);
    if (!values.isOpen()) return;
    checkDataFolder(platform, values);
    checkDatabase(platform, values);
    checkMarks(values);
    const auto scratch = std::make_unique<SharedArea>(); // where the setters show what they make of a value
    const SystemValues system(scratch.get());
    checkVariables(values, system);
    checkFlags(values);
    checkIntegers(values, system);
    checkNumbers(values, {{u"Sys_v", kStoredVariables}, {u"Sys_b", kStoredFlags}, {u"Sys_i", kStoredIntegers}});
}

void checkCalibrationSettings(const platform::Platform& platform, std::optional<std::size_t> item, Findings& findings) {
    StoredValues values(platform, kCalibrationKey, findings);
    if (!values.isOpen()) return;
    for (std::size_t id = 0; id < kCalibrationItemCount; ++id)
        if (!item || *item == id) checkItem(platform, values, id);
    if (!item)
        checkNumbers(values, {{u"CalUse_", kCalibrationItemCount},
                              {u"CalLinear_", kCalibrationItemCount},
                              {u"CalFile_", kCalibrationItemCount}});
}

} // namespace tallowmere::tools

#include "settings/core_settings.hpp"

#include "core/channels/attempt.hpp"
#include "core/channels/section_access.hpp"
#include "core/channels/system_values.hpp"
#include "platform/letter_case.hpp"
#include "settings/data_folders.hpp"
#include "settings/reg_ex.hpp"

#include <algorithm>

namespace tallowmere {
namespace {

constexpr std::size_t kStoredVariables = 18;
constexpr std::size_t kStoredFlags = 34;
constexpr std::size_t kStoredIntegers = 11;

void readDataFolder(const Context& context, const CRegEx& key) {
    const std::u16string folder = key.QueryString(u"DataFolder", GetDataFolder(context, {}));
    // By the text up to its first NUL: that is what the section's readers will see.
    if (!folder.empty() && context.platform.exists(folder.substr(0, folder.find(u'\0'))))
        writeText(context.area->dataFolder, folder);
}

void readDatabasePath(const Context& context, const CRegEx& key) {
    writeText(context.area->databasePath, key.QueryString(u"Database2", GetDatabasePath(context)));
}

void readMarksPath(const Context& context, const CRegEx& key) {
    std::u16string marks = key.QueryString(u"MarksXml", GetMarksPath(context));
    if (marks.empty()) return;
    if (!context.platform.caseSensitivePaths())
        std::ranges::transform(marks, marks.begin(), platform::lowerCase<char16_t>);
    writeText(context.area->marksPath, marks);
}

// Only what was really read goes through the setters. KEPT: without a setting integer 6 stays 5, which its setter
// would not let through. Each value stands alone: what finds no memory keeps its default.
void readVariables(SystemValues system, const CRegEx& key) noexcept {
    for (std::size_t index = 0; index < kStoredVariables; ++index)
        attempt([&] {
            if (const auto value = key.findDouble(indexedName(u"Sys_v", index))) system.setVariable(index, *value);
        });
}

void readFlags(SystemValues system, const CRegEx& key) noexcept {
    for (std::size_t index = 0; index < kStoredFlags; ++index)
        attempt([&] {
            const std::int32_t value = key.QueryDword(indexedName(u"Sys_b", index), system.flag(index));
            system.setFlag(index, value != 0 ? 1 : 0);
        });
}

void readIntegers(SystemValues system, const CRegEx& key) noexcept {
    for (const std::size_t index : {1u, 2u, 3u, 8u}) system.setInteger(index, 0);
    system.setInteger(4, 1);
    for (std::size_t index = 0; index < kStoredIntegers; ++index)
        attempt([&] {
            if (const auto value = key.findDword(indexedName(u"Sys_i", index))) system.setInteger(index, *value);
        });
}

} // namespace

void readCoreSettings(const Context& context) noexcept {
    if (context.area == nullptr) return;
    CRegEx key(context.platform);
    attempt([&] { key.Open(kCoreKey); });
    attempt([&] { readDataFolder(context, key); });
    attempt([&] { readDatabasePath(context, key); });
    attempt([&] { readMarksPath(context, key); });
    const SystemValues system(context.area);
    readVariables(system, key);
    readFlags(system, key);
    readIntegers(system, key);
}

} // namespace tallowmere

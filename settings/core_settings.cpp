#include "settings/core_settings.hpp"

#include "core/channels/section_access.hpp"
#include "core/channels/system_values.hpp"
#include "settings/data_folders.hpp"
#include "settings/reg_ex.hpp"

namespace tallowmere {
namespace {

constexpr std::size_t kStoredVariables = 18;
constexpr std::size_t kStoredFlags = 34;
constexpr std::size_t kStoredIntegers = 11;

void lowerCase(std::u16string& text) noexcept {
    for (char16_t& c : text)
        if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c - u'A' + u'a');
}

void readPaths(const Context& context, const CRegEx& key) {
    SharedArea& area = *context.area;
    const std::u16string folder = key.QueryString(u"DataFolder", GetDataFolder(context, {}));
    // By the text up to its first NUL: that is what the section's readers will see.
    if (!folder.empty() && context.platform.exists(folder.substr(0, folder.find(u'\0'))))
        writeText(area.dataFolder, folder);

    writeText(area.databasePath, key.QueryString(u"Database2", GetDatabasePath(context)));

    std::u16string marks = key.QueryString(u"MarksXml", GetMarksPath(context));
    if (marks.empty()) return;
    if (!context.platform.caseSensitivePaths()) lowerCase(marks);
    writeText(area.marksPath, marks);
}

// Only what was really read goes through the setters: integer 6 starts at 5, which its setter would not let
// through.
void readVariables(SystemValues system, const CRegEx& key) {
    for (std::size_t index = 0; index < kStoredVariables; ++index)
        if (const auto value = key.findDouble(indexedName(u"Sys_v", index))) system.setVariable(index, *value);
}

void readFlags(SystemValues system, const CRegEx& key) {
    for (std::size_t index = 0; index < kStoredFlags; ++index)
        system.setFlag(index, key.QueryDword(indexedName(u"Sys_b", index), system.flag(index)) != 0 ? 1 : 0);
}

void readIntegers(SystemValues system, const CRegEx& key) {
    for (const std::size_t index : {1u, 2u, 3u, 8u}) system.setInteger(index, 0);
    system.setInteger(4, 1);
    for (std::size_t index = 0; index < kStoredIntegers; ++index)
        if (const auto value = key.findDword(indexedName(u"Sys_i", index))) system.setInteger(index, *value);
}

} // namespace

void readCoreSettings(const Context& context) {
    if (context.area == nullptr) return;
    CRegEx key(context.platform);
    key.Open(kCoreKey);
    readPaths(context, key);
    const SystemValues system(context.area);
    readVariables(system, key);
    readFlags(system, key);
    readIntegers(system, key);
}

} // namespace tallowmere

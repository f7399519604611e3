#include "settings/data_folders.hpp"

#include "core/channels/section_access.hpp"

#include <algorithm>

namespace tallowmere {
namespace {

constexpr std::u16string_view kDatabaseExtension = u".db";
constexpr std::size_t kLongestDirectory = 255;
constexpr std::size_t kDriveCharacters = 2; // "C:"

bool hasDrives(const platform::Platform& platform) noexcept {
    return platform.separator() == u'\\';
}

/// What ends a component of a path: on Windows the slash and the drive's colon too.
std::u16string_view separatorsOf(const platform::Platform& platform) noexcept {
    return hasDrives(platform) ? u"\\/:" : u"/";
}

/// True when the last component of the path is a name with exactly the extension ".db".
bool isDatabase(std::u16string_view path, std::u16string_view separators) noexcept {
    const std::u16string_view name = path.substr(path.find_last_of(separators) + 1); // all of it for npos
    return name.size() > kDatabaseExtension.size() && name.ends_with(kDatabaseExtension);
}

/// Makes the default data folder and, if it is there then, remembers it in the section.
void adoptDefaultFolder(const Context& context) {
    std::u16string folder = context.platform.programDataFolder();
    if (folder.empty()) return;
    folder += context.platform.separator();
    folder += u"Tallowmere";
    if (!context.platform.isDirectory(folder)) context.platform.makeDirectory(folder);
    if (context.platform.exists(folder)) writeText(context.area->dataFolder, folder);
}

} // namespace

std::u16string GetDataFolder(const Context& context, std::u16string_view subFolder) {
    if (context.area == nullptr) return {};
    std::u16string folder = readText(context.area->dataFolder);
    if (folder.empty()) adoptDefaultFolder(context);
    if (subFolder.empty()) return folder;

    folder = readText(context.area->dataFolder);
    folder += context.platform.separator();
    folder += subFolder;
    if (!context.platform.isDirectory(folder)) context.platform.makeDirectory(folder);
    return folder;
}

std::u16string dataFile(const Context& context, std::u16string_view subFolder, std::u16string_view fileName) {
    std::u16string path = GetDataFolder(context, subFolder);
    path += context.platform.separator();
    path += fileName;
    return path;
}

std::u16string GetDatabasePath(const Context& context) {
    if (context.area == nullptr) return {};
    std::u16string path = readText(context.area->databasePath);
    if (isDatabase(path, separatorsOf(context.platform))) return path;
    writeText(context.area->databasePath, {});
    return dataFile(context, u"database", u"Tallowmere.db");
}

std::u16string GetMarksPath(const Context& context) {
    return dataFile(context, {}, u"marks.xml");
}

std::u16string GetHostFolder(const platform::Platform& platform) {
    std::u16string path = platform.hostExecutable();
    const bool hasDrive = hasDrives(platform) && path.size() >= kDriveCharacters && path[1] == u':';
    const std::size_t drive = hasDrive ? kDriveCharacters : 0;
    const std::size_t last = path.find_last_of(hasDrives(platform) ? u"\\/" : u"/");
    const std::size_t end = last == std::u16string::npos ? drive : std::max(last + 1, drive);
    if (end - drive > kLongestDirectory) return {};
    path.resize(end);
    return path;
}

} // namespace tallowmere

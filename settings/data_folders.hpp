// Where the data of all programs lies. The section remembers the folder, so that they all agree.
#pragma once

#include "core/channels/context.hpp"

#include <string>
#include <string_view>

namespace tallowmere {

/// The data folder, or a sub-folder of it, without a trailing separator; what is missing is made (one
/// level). Empty without a section.
/// subFolder   its name; empty for the data folder itself
/// KEPT: the call without a sub-folder that finds the section's field empty fills it with the default
/// folder and still returns an empty path; later calls return the folder.
[[nodiscard]] std::u16string GetDataFolder(const Context& context, std::u16string_view subFolder);

/// The path of a file in a sub-folder of the data folder; the sub-folder is made where missing.
[[nodiscard]] std::u16string dataFile(const Context& context, std::u16string_view subFolder,
                                      std::u16string_view fileName);

/// The path of the database file: the section's, unless its extension is not exactly ".db" (then the field
/// is cleared), else the default one, whose folder is made. Empty without a section.
[[nodiscard]] std::u16string GetDatabasePath(const Context& context);

/// The default path of the marks file; the one in the section plays no part. Without a section a
/// separator and the file's name.
[[nodiscard]] std::u16string GetMarksPath(const Context& context);

/// Drive and directory of this process's executable, ending with the separator ("C:\Programs\Nav\").
/// Empty when they can't be told, and when the directory has more than 255 characters.
[[nodiscard]] std::u16string GetHostFolder(const platform::Platform& platform);

} // namespace tallowmere

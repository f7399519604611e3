// The system log: serious problems, shown to the user and appended to the file of the day.
#pragma once

#include "core/channels/context.hpp"

#include <cstdint>
#include <string>
#include <string_view>

namespace tallowmere {

/// Shows the message in an error box and, when the user has closed it, appends it to the day's log file:
/// "14:03:27 : Unable to map shared memory". A file that can't be opened loses the line silently.
/// KEPT: the time in the line is UTC, the date in the file's name the local one (while system flag 1 is
/// set), so near midnight they may tell different days.
/// KEPT: without a section the file lies in the root folder of the current drive.
void WriteSystemLog(const Context& context, const std::u16string& message);

/// A moment as text, in UTC.
/// time     100 ns since 1601-01-01 UTC
/// format   as for wcsftime, in the C locale of the process; ASCII, only conversions of the C standard.
///          Empty: "2026-Nov-15 14:03:27", English, rounded to the nearest second (a half to the even one).
/// Empty outside 1970 to 3000 and when the text needs more than 255 characters.
[[nodiscard]] std::u16string FormatTime(std::int64_t time, std::u16string_view format);

/// A moment moved from UTC to local time while system flag 1 is set. Unchanged without a section, when the
/// time zone can't be told, and where the result would not fit.
/// KEPT: outside daylight saving the plain bias alone applies.
[[nodiscard]] std::int64_t ToLocalFileTime(const Context& context, std::int64_t time) noexcept;

} // namespace tallowmere

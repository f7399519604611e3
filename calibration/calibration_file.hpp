// Calibration files: text with numbers, read leniently into a table.
//
// Fields are separated by any run of blanks, commas and tabs, also at the start of a line. A line whose first
// field is a number is a data line; all others (headings, comments) are passed over. The first data line tells
// the layout. When its numbers ascend it is a header, and the columns lie at them:
//
//     0   45   90  135  180      positions of the columns
//     5   1.0  0.8 0.5  0.2 0    row 5, and a value for each column
//
// When they don't, there is no header and every data line holds a row's value and pairs of position and value:
//
//     5   3 1   4 1.5            row 5, with 1 at 3 and 1.5 at 4
#pragma once

#include "calibration/curve.hpp"
#include "platform/platform.hpp"

#include <string>

namespace tallowmere {

/// Replaces the table's rows and columns by those of the file; `linear` stays. A field that is no number ends
/// its line, which keeps what came before; a row without knots is dropped; rows are sorted by value, equal
/// ones in the file's order. Of a larger file the first 256 rows, 512 knots a row and 64 KiB a line count.
/// Without a readable file, or out of memory (std::bad_alloc), the table is left empty. Rows are left dirty.
void readCalibrationFile(const platform::Platform& platform, const std::u16string& path, CalibrationTable& table);

} // namespace tallowmere

// The table that a calibration item starts with.
#pragma once

#include "calibration/curve.hpp"
#include "calibration/item_table.hpp"
#include "calibration/polar.hpp"

namespace tallowmere {

/// Gives the table the shape of the definition, its positions, and the default value in every knot. With a
/// polar, the rows of the true-wind items then take two knots from it at the row's wind speed; "Brake" gets
/// its fixed values. Sets `changed`, leaves `linear`; rows are left dirty.
/// polar   may be null
void buildDefaultTable(const CalibrationItemDef& definition, const Polar* polar, CalibrationTable& table);

} // namespace tallowmere

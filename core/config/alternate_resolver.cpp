#include "core/config/alternate_table.hpp"

#include "core/channels/system_values.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace tallowmere {
namespace {

enum Column : std::size_t { // of the table; each is the situation in which it is chosen
    kFlagSet,               // system flag 36 is set
    kFlagClear,             // system flag 36 is clear
    kUpwind,
    kReaching,
    kDownwind,
    kBeforeGun,
    kPort,
    kStarboard,
    kOverride, // system flag 46 is set
};

constexpr double kAbeam = 90.0; // degrees

/// One row of the table, each cell taken once; 32767 for a cell that names no channel.
using Row = std::array<ChannelIndex, kAlternateColumns>;

bool given(ChannelIndex cell) noexcept {
    return cell != kNone16;
}

Row readRow(const SharedArea& area, ChannelIndex channel) noexcept {
    Row row;
    std::ranges::transform(area.alternates.cells[channel - kFirstAlternating], row.begin(),
                           [](const std::int32_t& cell) noexcept {
                               const std::int32_t value = readOnce(cell);
                               const bool named = value >= 1 && value < static_cast<std::int32_t>(kChannelCount);
                               return static_cast<ChannelIndex>(named ? value : kNone16);
                           });
    return row;
}

/// The own boat's value of a channel that the section declares as a plain double; empty otherwise.
std::optional<double> ownNumber(const SharedArea& area, ChannelIndex channel) noexcept {
    if (storageKindOf(&area, channel) != StorageKind::Double) return std::nullopt;
    const DoubleResult number = recordAsDouble(&area, channel, fetchRecord(&area, channel, 0).record);
    if (!number.holdsValue) return std::nullopt;
    return number.value;
}

/// True while the own boat's time to the gun is a count of zero or more. The bare 64 bits decide.
bool beforeGun(const SharedArea& area) noexcept {
    if (storageKindOf(&area, ZAN_TMTOGUN) != StorageKind::Time) return false;
    const std::int64_t countdown = fetchRecord(&area, ZAN_TMTOGUN, 0).record.ticks();
    return countdown >= 0 && countdown != kNoTime;
}

// Angles and margin are of any size: they are compared so that a quiet NaN raises nothing, and taken together so that
// infinities and the largest numbers don't either (core/channels/held_exceptions.hpp).

/// True for margin + target > angle, with an angle before the beam, where more than that of either decides already.
bool isWithin(double angle, double target, double margin) noexcept {
    const auto upToAbeam = [](double value) noexcept { return std::isgreater(value, kAbeam) ? kAbeam : value; };
    return std::isgreater(upToAbeam(margin) + upToAbeam(target), angle);
}

/// True for angle > target - margin; never for an infinite target.
bool isBeyond(double angle, double target, double margin) noexcept {
    return !std::isinf(target) && std::isgreater(angle, target - margin);
}

ChannelIndex chooseByWind(const SharedArea& area, const Row& row, double windAngle) noexcept {
    const double angle = std::fabs(windAngle);
    if (const std::optional<double> targetAngle = ownNumber(area, ZAN_TARG_TWA)) {
        const double target = std::fabs(*targetAngle);
        const double margin = std::fabs(systemVariable(&area, system_variable::kTargetMargin));
        if (std::isless(angle, kAbeam) && given(row[kUpwind]) && isWithin(angle, target, margin)) return row[kUpwind];
        if (std::isgreater(angle, kAbeam) && given(row[kDownwind]) && isBeyond(angle, target, margin))
            return row[kDownwind];
        if (given(row[kReaching])) return row[kReaching];
    }
    const ChannelIndex byTack = row[std::isless(windAngle, 0.0) ? kPort : kStarboard];
    if (given(byTack)) return byTack;
    if (std::isless(angle, kAbeam)) return row[kUpwind];
    return std::isgreaterequal(angle, kAbeam) ? row[kDownwind] : kNone16;
}

/// The cell of the first rule that fires; 32767 for an empty row.
ChannelIndex chooseCell(const SharedArea& area, const Row& row) noexcept {
    if (systemFlag(&area, system_flag::kAlternateLast) != 0 && given(row[kOverride])) return row[kOverride];
    if (given(row[kBeforeGun]) && beforeGun(area)) return row[kBeforeGun];
    const ChannelIndex byFlag = row[systemFlag(&area, system_flag::kAlternateFirst) != 0 ? kFlagSet : kFlagClear];
    if (given(byFlag)) return byFlag;
    if (const std::optional<double> windAngle = ownNumber(area, ZAN_TWA)) {
        const ChannelIndex byWind = chooseByWind(area, row, *windAngle);
        if (given(byWind)) return byWind;
    }
    const auto first = std::ranges::find_if(row, given);
    return first != row.end() ? *first : kNone16;
}

} // namespace

ChannelIndex detail::chooseAlternative(const SharedArea* area, ChannelIndex alternating, bool mayRecurse) noexcept {
    if (area == nullptr) return alternating;
    const ChannelIndex chosen = chooseCell(*area, readRow(*area, alternating));
    return mayRecurse ? resolveAlternating(area, chosen, false) : chosen;
}

} // namespace tallowmere

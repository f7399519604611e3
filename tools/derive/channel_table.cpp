#include "tools/commands/text.hpp"
#include "tools/derive/catalogue_rows.hpp"
#include "units/unit_names.hpp"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

namespace tallowmere::derive {
namespace {

constexpr int kNone = 32767;
constexpr int kNoDecimals = 255;

constexpr char kHead[] = R"(# The channels

Printed from `core/channels/catalogue.def` and `units/unit_names.cpp` by the target `derive`; do not edit.

- **No., constant**: the channel's number and its name in `<tallowmere/channels.h>`.
- **Short, long**: its names. User channels may be named anew while programs run.
- **Kind, unit**: what its value measures ([unit classes](#unit-classes)) and the base unit that it is kept in. For
  times the unit is how they are shown: a date and time is read and written as days since 1899-12-30 UTC, a time span
  as days.
- **Range**: a value outside clears the channel. "any": every value is plausible.
- **Stale**: the age in seconds from which a reader calls the value stale. "never": it does not age.
- **Dec.**: decimals shown; `channels.xml` may set others.
- **Slot**: the channel's place in the blocks of boats 2 to 99; without one it is kept for boats 0 and 1 only.
- **Flags**: *fix*: written for the own boat only while a host accepts satellite fixes (system integer 6 is 3);
  *damp*: `channels.xml` may set a damping; *log*: logged unless `channels.xml` says otherwise; *sensor*: raw
  sensor, load, rudder, foil or user channel.

| No. | Constant | Short | Long | Kind | Unit | Range | Stale | Dec. | Slot | Flags |
|---:|---|---|---|---|---|---|---:|---:|---:|---|
)";

std::string flagsOf(const Row& row) {
    std::string flags;
    const auto add = [&](bool set, const char* name) {
        if (!set) return;
        if (!flags.empty()) flags += ' ';
        flags += name;
    };
    add(row.ownBoatProtected, "fix");
    add(row.dampable, "damp");
    add(row.logged, "log");
    add(row.sensor, "sensor");
    return flags;
}

std::string rangeOf(const Row& row) {
    if (row.minValue == row.maxValue) return "any";
    return std::to_string(row.minValue) + " to " + std::to_string(row.maxValue);
}

std::string tableLine(const std::vector<std::string>& cells) {
    std::string line = "|";
    for (const std::string& cell : cells) {
        if (!cell.empty()) line += ' ';
        line += cell;
        line += " |";
    }
    return line + '\n';
}

std::string lineOf(const Row& row) {
    const UnitName unit = unitNameOf(row.unitClass);
    return tableLine({
        std::to_string(row.index),
        "`ZAN_" + std::string(row.constant) + "`",
        tools::printable(std::u16string_view(row.shortName)),
        tools::printable(std::u16string_view(row.longName)),
        unit.words,
        unit.baseUnit,
        rangeOf(row),
        row.timeoutSeconds == 0 ? "never" : std::to_string(row.timeoutSeconds),
        row.decimals == kNoDecimals ? "" : std::to_string(row.decimals),
        row.compactSlot == kNone ? "" : std::to_string(row.compactSlot),
        flagsOf(row),
    });
}

constexpr char kUnitClassHead[] = R"(
## Unit classes

The numbers of the kinds: `type` in `channels.xml`, `unit_class` of `<tallowmere/view.h>` and of recordings in SQLite,
`class` of recordings in CSV, the unit class in the section. Any other number counts as 0. **Stored** is the kind of
record that the library writes (`<tallowmere/tallowmere.h>`).

| No. | Kind | Unit | Stored |
|---:|---|---|---|
)";

const char* nameOf(StorageKind kind) {
    switch (kind) {
    case StorageKind::Time:
        return "time";
    case StorageKind::Integer:
        return "integer";
    default:
        return "double";
    }
}

std::string unitClassTable() {
    std::string text = kUnitClassHead;
    for (std::int16_t number = 0; number <= static_cast<std::int16_t>(UnitClass::FluidPressure); ++number) {
        const auto unitClass = static_cast<UnitClass>(number);
        const UnitName unit = unitNameOf(unitClass);
        text += tableLine({std::to_string(number), unit.words, unit.baseUnit, nameOf(storageKindOf(unitClass))});
    }
    return text;
}

} // namespace

std::string channelTable() {
    std::string text = kHead;
    for (const Row& row : kRows) text += lineOf(row);
    return text + unitClassTable();
}

} // namespace tallowmere::derive

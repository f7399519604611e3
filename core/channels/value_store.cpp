#include "core/channels/value_store.hpp"

#include "core/channels/system_values.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace tallowmere {
namespace {

constexpr double kTicksPerDay = 8.64e11;
constexpr double kDaysFrom1601To1899 = 109205.0; // to 1899-12-30, day 0 of dates kept as doubles
constexpr std::int64_t kTicksPerSecond = 10'000'000;

/// Rounds half away from zero. Empty when the result does not fit, and for NaN.
template <class Integer> std::optional<Integer> roundToInteger(double value) noexcept {
    constexpr auto low = static_cast<double>(std::numeric_limits<Integer>::min());
    constexpr double end = -low; // one above the largest, exactly
    const double rounded = std::round(value);
    if (!(rounded >= low && rounded < end)) return std::nullopt;
    return static_cast<Integer>(rounded);
}

std::optional<std::int64_t> ticksFromDays(UnitClass unitClass, double days) noexcept {
    switch (unitClass) {
    case UnitClass::DateTime:
        if (days == 0.0) return std::nullopt;
        return roundToInteger<std::int64_t>((days + kDaysFrom1601To1899) * kTicksPerDay);
    case UnitClass::TimeSpan:
        return roundToInteger<std::int64_t>(days * kTicksPerDay);
    default:
        return std::nullopt;
    }
}

/// Adds half a second and cuts the fraction of a second off, toward zero.
std::int64_t wholeSeconds(std::int64_t ticks) noexcept {
    constexpr std::int64_t half = kTicksPerSecond / 2;
    const std::int64_t seconds =
        ticks >= 0 ? static_cast<std::int64_t>((static_cast<std::uint64_t>(ticks) + half) / kTicksPerSecond)
                   : (ticks + half) / kTicksPerSecond;
    return seconds * kTicksPerSecond;
}

double daysFromTicks(UnitClass unitClass, std::int64_t ticks) noexcept {
    switch (unitClass) {
    case UnitClass::DateTime:
        if (ticks == kNoTime) return 0.0;
        return static_cast<double>(wholeSeconds(ticks)) / kTicksPerDay - kDaysFrom1601To1899;
    case UnitClass::TimeSpan:
        if (ticks == kNoTime) return std::numeric_limits<double>::quiet_NaN();
        return static_cast<double>(ticks) / kTicksPerDay;
    default:
        return NO_VALUE;
    }
}

/// Brings an angle into its range by one turn at most; one further out is left as it is.
double normaliseAngle(UnitClass unitClass, double value) noexcept {
    if (unitClass == UnitClass::Bearing) {
        if (value < 0.0) return value + 360.0 >= 0.0 ? value + 360.0 : value;
        if (value >= 360.0) return value - 360.0 <= 360.0 ? value - 360.0 : value;
    } else if (isSignedAngle(unitClass)) {
        if (value < -180.0) return value + 360.0 >= -180.0 ? value + 360.0 : value;
        if (value > 180.0) return value - 360.0 <= 180.0 ? value - 360.0 : value;
    }
    return value;
}

double checkRange(const ChannelDef& row, double value) noexcept {
    if (row.minValue == row.maxValue) return value;
    return value < row.minValue || value > row.maxValue ? NO_VALUE : value;
}

/// Where a channel of a boat is kept.
struct Slot {
    std::int64_t* stamp = nullptr;
    ChannelValue* current = nullptr;
    explicit operator bool() const noexcept { return current != nullptr; }
};

/// Empty when the boat does not keep the channel. channel below 414, boat below 100.
Slot slotOf(SharedArea& area, ChannelIndex channel, BoatIndex boat) noexcept {
    if (boat < kFullBoatCount) {
        FullBoatBlock& block = area.fullBlocks[boat];
        return {&block.stamps[channel], &block.current[channel]};
    }
    const std::uint16_t slot = kCatalogue[channel].compactIndex;
    if (slot >= kCompactSlotCount) return {};
    CompactBoatBlock& block = area.compactBlocks[boat - kFullBoatCount];
    return {&block.stamps[slot], &block.current[slot]};
}

/// Boats in use, whatever the section says.
std::uint32_t boatsInUse(const SharedArea& area) noexcept {
    return std::min<std::uint32_t>(readOnce(area.boatCount), kBoatCount);
}

/// Puts a record and its stamp into their slot. False when the boat does not keep the channel.
bool put(SharedArea& area, ChannelIndex channel, const Record& record, BoatIndex boat, std::int64_t stamp) noexcept {
    const Slot slot = slotOf(area, channel, boat);
    if (!slot) return false;
    writeOnce(*slot.stamp, stamp);
    storeRecord(*slot.current, record);
    if (channel != ZAN_TIME && record.holds(storageKindOf(&area, channel))) {
        writeOnce(area.boats[boat].hasData, 1);
        if (readOnce(area.boatCount) <= boat) writeOnce(area.boatCount, boat + 1U);
    }
    return true;
}

/// The values that follow from one write. A derived value goes straight into its slot: the refusals,
/// range, correction and `written` byte of its own channel are not applied.
class DerivedValues {
  public:
    DerivedValues(const ValueStore& values, BoatIndex boat, std::int64_t stamp) noexcept
        : values_(values), area_(*values.area()), boat_(boat), stamp_(stamp) {}

    void gpsOffset(std::int64_t gpsTime, std::int64_t now) noexcept {
        if (storageKindOf(&area_, ZAN_GPS_TOFFSET) != StorageKind::Time) return;
        // Unsigned, so that an absurd time wraps instead of overflowing.
        putWithKindZero(ZAN_GPS_TOFFSET, static_cast<std::uint64_t>(now) - static_cast<std::uint64_t>(gpsTime));
    }

    /// The value to store for `value`, and what else follows from it.
    double fromNumber(ChannelIndex channel, double value) noexcept {
        switch (channel) {
        case ZAN_RUDDERP:
            rudderToe(ZAN_RUDDERS, [&](double starboard) { return value - starboard; });
            break;
        case ZAN_RUDDERS:
            rudderToe(ZAN_RUDDERP, [&](double port) { return port - value; });
            break;
        case ZAN_AWA:
            return lessMastAngle(value);
        case ZAN_HDG:
            rate(channel, ZAN_ROT, system_flag::kComputeTurnRate, value);
            break;
        case ZAN_HEEL:
            rate(channel, ZAN_HEELRATE, system_flag::kComputeTiltRates, value);
            break;
        case ZAN_TRIM:
            rate(channel, ZAN_TRIMRATE, system_flag::kComputeTiltRates, value);
            break;
        default:
            break;
        }
        return value;
    }

  private:
    [[nodiscard]] bool flag(std::size_t index) const noexcept { return SystemValues(&area_).flag(index) != 0; }

    /// KEPT: kind byte 0, so a plain read as a double gives the payload's first byte.
    void putWithKindZero(ChannelIndex channel, std::uint64_t payload) noexcept {
        put(area_, channel, Record{static_cast<std::uint64_t>(StorageKind::Byte), payload}, boat_, stamp_);
    }

    template <class Difference> void rudderToe(ChannelIndex otherRudder, Difference difference) noexcept {
        const RecordResult other = values_.fetch(otherRudder, boat_);
        if (!other.holdsValue || storageKindOf(&area_, ZAN_RUDDERTOE) != StorageKind::Double) return;
        putWithKindZero(ZAN_RUDDERTOE, std::bit_cast<std::uint64_t>(difference(other.record.number())));
    }

    /// KEPT: the own boat's mast angle, whichever boat's wind angle it is.
    [[nodiscard]] double lessMastAngle(double value) const noexcept {
        if (!flag(system_flag::kCorrectMastAngle)) return value;
        const RecordResult mast = values_.fetch(ZAN_MASTANG, 0);
        return mast.holdsValue ? value - mast.record.number() : value;
    }

    /// Change of a value a second, over whole seconds. KEPT: a heading's step over north is not wrapped,
    /// and the record's header carries the previous stamp of the source.
    void rate(ChannelIndex source, ChannelIndex target, std::size_t enablingFlag, double value) noexcept {
        if (!flag(enablingFlag)) return;
        const RecordResult previous = values_.fetch(source, boat_);
        if (!previous.holdsValue) return;
        const Slot slot = slotOf(area_, source, boat_);
        if (!slot) return;
        const std::int64_t previousStamp = readOnce(*slot.stamp);
        if (previousStamp == kNoTime || stamp_ <= previousStamp) return;
        const std::uint64_t elapsed = static_cast<std::uint64_t>(stamp_) - static_cast<std::uint64_t>(previousStamp);
        const std::uint64_t seconds = elapsed / kTicksPerSecond;
        if (seconds == 0) return;
        const double change = (value - previous.record.number()) / static_cast<double>(seconds);
        put(area_, target, Record{static_cast<std::uint64_t>(previousStamp), std::bit_cast<std::uint64_t>(change)},
            boat_, stamp_);
    }

    const ValueStore& values_;
    SharedArea& area_;
    BoatIndex boat_;
    std::int64_t stamp_;
};

} // namespace

Record ValueStore::noValueRecord(ChannelIndex channel) const noexcept {
    return Record::none(storageKindOf(area(), channel));
}

bool ValueStore::holdsValue(ChannelIndex channel, const Record& record) const noexcept {
    return record.holds(storageKindOf(area(), channel));
}

RecordResult ValueStore::doubleToRecord(ChannelIndex channel, double value) const noexcept {
    const StorageKind kind = storageKindOf(area(), channel);
    Record record = Record::none(kind);
    if (channel >= kChannelCount || value == NO_VALUE) return {record, false};
    if (kind == StorageKind::Integer) {
        if (const auto whole = roundToInteger<std::int32_t>(value)) record = Record::ofInteger(*whole);
    } else if (kind == StorageKind::Time) {
        if (const auto ticks = ticksFromDays(unitClassOf(area(), channel), value)) record = Record::ofTicks(*ticks);
    } else {
        record = Record::ofNumber(value);
    }
    return {record, record.holds(kind)};
}

DoubleResult ValueStore::recordAsDouble(ChannelIndex channel, const Record& record) const noexcept {
    if (channel >= kChannelCount || !holdsValue(channel, record)) return {};
    double value = NO_VALUE;
    switch (static_cast<StorageKind>(record.kind())) {
    case StorageKind::Byte:
        value = record.byte();
        break;
    case StorageKind::Double:
        value = record.number();
        break;
    case StorageKind::Integer:
        value = record.integer();
        break;
    case StorageKind::Time:
        value = daysFromTicks(unitClassOf(area(), channel), record.ticks());
        break;
    default:
        break;
    }
    return {value, value != NO_VALUE};
}

bool ValueStore::store(ChannelIndex channel, Record record, BoatIndex boat, std::int64_t stamp) noexcept {
    SharedArea* const view = area();
    if (view == nullptr) return false;
    const std::int64_t now = stampTime();

    if (channel == ZAN_TIME || channel >= kChannelCount || boat >= kBoatCount) return false;
    ChannelSetting& setting = view->settings[channel];
    if (readOnce(setting.blocked) != 0) return false;
    if (readOnce(setting.writeLockable) != 0 && readOnce(view->systemFlags[system_flag::kWriteLock]) != 0) return false;

    if (stamp == kNoTime) stamp = now;
    const StorageKind kind = storageKindOf(view, channel);
    if (record.holds(kind)) {
        if (kind == StorageKind::Double) {
            double value = checkRange(kCatalogue[channel], normaliseAngle(unitClassOf(view, channel), record.number()));
            if (value != NO_VALUE && corrector_ != nullptr && readOnce(setting.calibrate) != 0)
                value = corrector_->correct(channel, value);
            if (value != NO_VALUE) value = DerivedValues(*this, boat, stamp).fromNumber(channel, value);
            record.payload = std::bit_cast<std::uint64_t>(value);
        } else if (channel == ZAN_GPS_TIME && kind == StorageKind::Time) {
            DerivedValues(*this, boat, stamp).gpsOffset(record.ticks(), now);
        }
    }

    const bool stored = put(*view, channel, record, boat, stamp);
    if (record.holds(kind)) {
        writeOnce(setting.written, 1);
        writeOnce(view->systemFlags[system_flag::kSomethingWritten], 1);
    }
    return stored;
}

RecordResult ValueStore::fetch(ChannelIndex channel, BoatIndex boat) const noexcept {
    const StorageKind kind = storageKindOf(area(), channel);
    if (area() != nullptr && channel < kChannelCount && boat < boatsInUse(*area())) {
        if (const Slot slot = slotOf(*area(), channel, boat)) {
            const Record record = loadRecord(*slot.current);
            return {record, record.holds(kind)};
        }
    }
    return {Record::none(kind), false};
}

std::int64_t ValueStore::stampTime() noexcept {
    const std::int64_t now = context_.platform.now();
    SharedArea* const view = area();
    if (view == nullptr) return now;

    const auto payload = static_cast<std::uint64_t>(now);
    for (FullBoatBlock& block : view->fullBlocks) {
        writeOnce(block.stamps[ZAN_TIME], now);
        storePayload(block.current[ZAN_TIME], payload);
        storePayload(block.second[ZAN_TIME], 0);
        storePayload(block.third[ZAN_TIME], payload);
    }
    constexpr std::size_t slot = kCatalogue[ZAN_TIME].compactIndex;
    const std::uint32_t boats = boatsInUse(*view);
    for (std::uint32_t boat = kFullBoatCount; boat < boats; ++boat) {
        CompactBoatBlock& block = view->compactBlocks[boat - kFullBoatCount];
        writeOnce(block.stamps[slot], now);
        storePayload(block.current[slot], payload);
        storePayload(block.third[slot], payload);
    }
    return now;
}

} // namespace tallowmere

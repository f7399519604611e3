#include "core/channels/value_store.hpp"

#include "core/channels/derived_channels.hpp"
#include "core/channels/held_exceptions.hpp"
#include "core/channels/rounding.hpp"
#include "core/channels/system_values.hpp"
#include "core/channels/time_scale.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <span>

namespace tallowmere {
namespace {

/// Rounds half away from zero. Empty when the result does not fit, and for NaN.
template <class Integer> std::optional<Integer> roundToInteger(double value) noexcept {
    constexpr auto low = static_cast<double>(std::numeric_limits<Integer>::min());
    constexpr double end = -low; // one above the largest, exactly
    const double rounded = roundHalfAway(value);
    if (!(std::isgreaterequal(rounded, low) && std::isless(rounded, end))) return std::nullopt;
    return static_cast<Integer>(rounded);
}

std::optional<std::int64_t> ticksFromDays(UnitClass unitClass, double days) noexcept {
    constexpr double beyond = 2e7; // days; more than 64 bits hold, whichever the unit class
    if (!std::isless(std::fabs(days), beyond)) return std::nullopt;
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

// Values come from anywhere: they are compared so that a quiet NaN raises nothing (core/channels/held_exceptions.hpp).

/// Brings an angle into its range by one turn at most; one further out is left as it is.
/// KEPT: so Heel -400 becomes -40 and -600 is left for the range check to clear; a bearing of 720 becomes 360.
double normaliseAngle(UnitClass unitClass, double value) noexcept {
    if (unitClass == UnitClass::Bearing) {
        if (std::isless(value, 0.0)) return value + 360.0 >= 0.0 ? value + 360.0 : value;
        if (std::isgreaterequal(value, 360.0)) return value - 360.0 <= 360.0 ? value - 360.0 : value;
    } else if (isSignedAngle(unitClass)) {
        if (std::isless(value, -180.0)) return value + 360.0 >= -180.0 ? value + 360.0 : value;
        if (std::isgreater(value, 180.0)) return value - 360.0 <= 180.0 ? value - 360.0 : value;
    }
    return value;
}

double checkRange(const ChannelDef& row, double value) noexcept {
    if (row.minValue == row.maxValue) return value;
    return std::isless(value, row.minValue) || std::isgreater(value, row.maxValue) ? NO_VALUE : value;
}

/// Puts a record of a channel of this storage kind and its stamp into their slot. False when the boat does
/// not keep the channel.
inline bool put(SharedArea& area, ChannelIndex channel, StorageKind kind, Record record, BoatIndex boat,
                std::int64_t stamp) noexcept {
    const auto slot = valueSlotOf(area, channel, boat);
    if (!slot) return false;
    writeOnce(*slot.stamp, stamp);
    storeRecord(*slot.current, record);
    if (record.holds(kind)) {
        writeOnce(area.boats[boat].hasData, 1);
        if (readOnce(area.boatCount) <= boat) writeOnce(area.boatCount, boat + 1U);
    }
    return true;
}

/// Puts a derived record likewise, by its own channel's kind.
void putDerived(SharedArea& area, ChannelIndex channel, Record record, BoatIndex boat, std::int64_t stamp) noexcept {
    put(area, channel, storageKindOf(&area, channel), record, boat, stamp);
}

/// Puts the time into the clock channel of every boat in use. The kind bytes stay as they are.
inline void stampClock(SharedArea& area, std::int64_t now) noexcept {
    const auto payload = static_cast<std::uint64_t>(now);
    for (FullBoatBlock& block : area.fullBlocks) {
        writeOnce(block.stamps[ZAN_TIME], now);
        storePayload(block.current[ZAN_TIME], payload);
        storePayload(block.second[ZAN_TIME], 0);
        storePayload(block.third[ZAN_TIME], payload);
    }
    constexpr std::size_t slot = kCatalogue[ZAN_TIME].compactIndex;
    const std::uint32_t boats = std::max<std::uint32_t>(boatsInUse(area), kFullBoatCount);
    for (CompactBoatBlock& block : std::span(area.compactBlocks).first(boats - kFullBoatCount)) {
        writeOnce(block.stamps[slot], now);
        storePayload(block.current[slot], payload);
        storePayload(block.third[slot], payload);
    }
}

/// True for a write that is not made, whatever is written.
bool isRefused(const SharedArea& area, ChannelIndex channel, BoatIndex boat) noexcept {
    if (channel == ZAN_TIME || channel >= kChannelCount || boat >= kBoatCount) return true;
    const ChannelSetting& setting = area.settings[channel];
    if (readOnce(setting.blocked) != 0) return true;
    return readOnce(setting.writeLockable) != 0 && readOnce(area.systemFlags[system_flag::kWriteLock]) != 0;
}

/// The values that follow from one write. A derived value goes straight into its slot: the refusals,
/// range, correction and `written` byte of its own channel are not applied.
class DerivedValues {
  public:
    DerivedValues(const ValueStore& values, BoatIndex boat, std::int64_t stamp) noexcept
        : values_(values), area_(*values.area()), boat_(boat), stamp_(stamp) {}

    /// What follows from a time.
    void fromTime(const DerivedChannel& derived, std::int64_t time, std::int64_t now) noexcept {
        if (derived.derivation != Derivation::TimeOffset) return;
        if (storageKindOf(&area_, derived.target) != StorageKind::Time) return;
        // Unsigned, so that an absurd time wraps instead of overflowing.
        putWithKindZero(derived.target, static_cast<std::uint64_t>(now) - static_cast<std::uint64_t>(time));
    }

    /// The value to store for `value`, and what else follows from it. A correction may have made any number of it.
    [[gnu::noinline]] double fromNumber(const DerivedChannel& derived, double value) noexcept {
        if (isModerate(value)) return whatFollows(derived, value);
        return withExceptionsHeld([&]() noexcept { return whatFollows(derived, value); });
    }

  private:
    double whatFollows(const DerivedChannel& derived, double value) noexcept {
        if (derived.flag != kAlways && SystemValues(&area_).flag(derived.flag) == 0) return value;
        switch (derived.derivation) {
        case Derivation::ToeFromPort:
            rudderToe(derived, ZAN_RUDDERS, [&](double starboard) { return value - starboard; });
            break;
        case Derivation::ToeFromStarboard:
            rudderToe(derived, ZAN_RUDDERP, [&](double port) { return port - value; });
            break;
        case Derivation::LessMastAngle:
            return lessMastAngle(value);
        case Derivation::Rate:
            rate(derived, value);
            break;
        case Derivation::TimeOffset: // of a channel that keeps times
            break;
        }
        return value;
    }

    /// KEPT: kind byte 0, so a plain read as a double gives the payload's first byte.
    void putWithKindZero(ChannelIndex channel, std::uint64_t payload) noexcept {
        putDerived(area_, channel, Record{static_cast<std::uint64_t>(StorageKind::Byte), payload}, boat_, stamp_);
    }

    template <class Difference>
    void rudderToe(const DerivedChannel& derived, ChannelIndex otherRudder, Difference difference) noexcept {
        const RecordResult other = values_.fetch(otherRudder, boat_);
        if (!other.holdsValue || storageKindOf(&area_, derived.target) != StorageKind::Double) return;
        putWithKindZero(derived.target, std::bit_cast<std::uint64_t>(difference(other.record.number())));
    }

    /// KEPT: the own boat's mast angle, whichever boat's wind angle it is.
    [[nodiscard]] double lessMastAngle(double value) const noexcept {
        const RecordResult mast = values_.fetch(ZAN_MASTANG, 0);
        return mast.holdsValue ? value - mast.record.number() : value;
    }

    /// Change of a value a second, over whole seconds. KEPT: a heading's step over north is not wrapped,
    /// and the record's header carries the previous stamp of the source.
    void rate(const DerivedChannel& derived, double value) noexcept {
        const RecordResult previous = values_.fetch(derived.source, boat_);
        if (!previous.holdsValue) return;
        const auto slot = valueSlotOf(area_, derived.source, boat_);
        if (!slot) return;
        const std::int64_t previousStamp = readOnce(*slot.stamp);
        if (previousStamp == kNoTime || stamp_ <= previousStamp) return;
        const std::uint64_t elapsed = static_cast<std::uint64_t>(stamp_) - static_cast<std::uint64_t>(previousStamp);
        const std::uint64_t seconds = elapsed / kTicksPerSecond;
        if (seconds == 0) return;
        const double change = (value - previous.record.number()) / static_cast<double>(seconds);
        putDerived(area_, derived.target,
                   Record{static_cast<std::uint64_t>(previousStamp), std::bit_cast<std::uint64_t>(change)}, boat_,
                   stamp_);
    }

    const ValueStore& values_;
    SharedArea& area_;
    BoatIndex boat_;
    std::int64_t stamp_;
};

} // namespace

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

/// What becomes of a number before it is stored: into its range, checked, corrected.
inline double ValueStore::applyRules(ChannelIndex channel, double value) const noexcept {
    value = checkRange(kCatalogue[channel], normaliseAngle(unitClassOf(area(), channel), value));
    if (value != NO_VALUE && corrector_ != nullptr && readOnce(area()->settings[channel].calibrate) != 0)
        return corrector_->correct(channel, value);
    return value;
}

/// The way of a write. `recordFor` gives the record to write, for the channel's storage kind; each of the two
/// callers has its own copy of this code, in which a plain double stays in a register.
template <class RecordFor>
bool ValueStore::write(ChannelIndex channel, BoatIndex boat, std::int64_t stamp, RecordFor recordFor) noexcept {
    SharedArea* const view = area();
    if (view == nullptr) return false;
    // The order is for speed: the clock first, because reading it waits for all that was begun before it; loads
    // before the many stores, behind which they would wait; a correction before them too, since it takes longest.
    const std::int64_t now = context_.platform.now();
    const bool refused = isRefused(*view, channel, boat);
    const StorageKind kind = storageKindOf(view, channel);
    Record record = refused ? Record{} : recordFor(kind);
    const bool isNumber = !refused && kind == StorageKind::Double && record.holds(kind);
    if (isNumber) record.payload = std::bit_cast<std::uint64_t>(applyRules(channel, record.number()));
    stampClock(*view, now);
    if (refused) return false;

    if (stamp == kNoTime) stamp = now;
    if (const DerivedChannel* const derived = derivedFrom(channel)) [[unlikely]] {
        DerivedValues follow(*this, boat, stamp);
        if (isNumber && record.number() != NO_VALUE)
            record.payload = std::bit_cast<std::uint64_t>(follow.fromNumber(*derived, record.number()));
        else if (kind == StorageKind::Time && record.holds(kind))
            follow.fromTime(*derived, record.ticks(), now);
    }

    const bool stored = put(*view, channel, kind, record, boat, stamp);
    if (record.holds(kind)) {
        writeOnce(view->settings[channel].written, 1);
        writeOnce(view->systemFlags[system_flag::kSomethingWritten], 1);
    }
    return stored;
}

bool ValueStore::store(ChannelIndex channel, Record record, BoatIndex boat, std::int64_t stamp) noexcept {
    return write(channel, boat, stamp, [&](StorageKind) noexcept { return record; });
}

bool ValueStore::storeDouble(ChannelIndex channel, double value, BoatIndex boat) noexcept {
    return write(channel, boat, kNoTime, [&](StorageKind kind) noexcept {
        return kind == StorageKind::Double ? Record::ofNumber(value) : doubleToRecord(channel, value).record;
    });
}

std::int64_t ValueStore::stampTime() noexcept {
    const std::int64_t now = context_.platform.now();
    if (area() != nullptr) stampClock(*area(), now);
    return now;
}

} // namespace tallowmere

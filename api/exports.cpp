// The eleven exported functions: argument checks, sentinels and return codes around the value store.
#include "api/library_core.hpp"
#include "core/channels/mob_mark.hpp"
#include "core/channels/system_values.hpp"
#include "core/config/alternate_table.hpp"

#include <tallowmere/tallowmere.h>

#include <algorithm>
#include <cstring>

using namespace tallowmere;

namespace {

constexpr std::int32_t kFixesFromClients = 3; // system integer 6: a host accepts the own boat's fixes

bool inRange(std::uint16_t channel, std::uint16_t boat) noexcept {
    return channel < kChannelCount && boat < kBoatCount;
}

SystemValues systemValues() noexcept {
    return SystemValues(libraryValues().area());
}

/// Copies a record out to a caller, whose buffer may have any alignment.
void copyOut(ChannelValue* to, const Record& record) noexcept {
    std::memcpy(to, &record.header, sizeof record.header);
    std::memcpy(reinterpret_cast<std::byte*>(to) + sizeof record.header, &record.payload, sizeof record.payload);
}

Record copyIn(const ChannelValue* from) noexcept {
    Record record;
    std::memcpy(&record.header, from, sizeof record.header);
    std::memcpy(&record.payload, reinterpret_cast<const std::byte*>(from) + sizeof record.header,
                sizeof record.payload);
    return record;
}
static_assert(sizeof(ChannelValue) == 2 * sizeof(std::uint64_t));

/// What a write answers without writing, or that it may go on.
struct Admission {
    bool refused;
    std::uint8_t answer;
};

Admission admitWrite(std::uint16_t channel, std::uint16_t boat) noexcept {
    const auto below = static_cast<std::uint16_t>(channel - 1);
    // KEPT: the answer is the low byte of the number before the channel, mostly true for a caller.
    if (below >= kChannelCount - 1 || boat >= kBoatCount) return {true, static_cast<std::uint8_t>(below)};
    const std::uint8_t isProtected = kCatalogue[channel].ownBoatProtected;
    if (boat == 0 && isProtected != 0 && !systemValues().inMode(kFixesFromClients, 0)) return {true, isProtected};
    return {false, 0};
}

/// A user channel's number from what a client calls it: 0 to 31 or the channel number itself.
/// KEPT: 32 to 171 become 204 to 343 and are no user channels.
std::size_t userChannelOf(std::uint16_t index) noexcept {
    return index < kFirstUserChannel ? std::size_t{kFirstUserChannel} + index : index;
}

} // namespace

extern "C" {

int GetBoatNum(void) noexcept {
    return ZAN_BOAT_COUNT;
}

int GetZanVarNum(void) noexcept {
    return ZAN_CHANNEL_COUNT;
}

std::uint8_t GetZanVar(std::uint16_t channel, double* value, std::uint16_t boat, std::uint16_t* source) noexcept {
    if (!inRange(channel, boat)) {
        *source = ZAN_NO_CHANNEL;
        *value = NO_VALUE;
        return 0;
    }
    const ValueStore& values = libraryValues();
    const ChannelIndex read = isAlternating(channel) ? resolveAlternating(values, channel) : channel;
    *source = read;
    const RecordResult found = values.fetch(read, boat);
    if (!found.holdsValue) return 0;
    const DoubleResult result = values.recordAsDouble(read, found.record);
    *value = result.value;
    return result.holdsValue ? 1 : 0;
}

std::uint8_t GetZanVar2(std::uint16_t channel, ChannelValue* record, std::uint16_t boat,
                        std::uint16_t* source) noexcept {
    if (!inRange(channel, boat)) {
        *source = ZAN_NO_CHANNEL;
        copyOut(record, Record::ofNumber(NO_VALUE));
        return 0;
    }
    const ValueStore& values = libraryValues();
    const ChannelIndex read = isAlternating(channel) ? resolveAlternating(values, channel) : channel;
    *source = read;
    const RecordResult found = values.fetch(read, boat);
    copyOut(record, found.record);
    return found.holdsValue ? 1 : 0;
}

void GetZanVarName(std::uint16_t channel, char* name) noexcept {
    if (name == nullptr || channel >= kChannelCount) return;
    std::memset(name, 0, ZAN_NAME_BYTES);
    try {
        const Context& context = libraryValues().context();
        const std::string narrow = context.platform.narrow(shortNameOf(context.area, channel), ZAN_NAME_BYTES - 1);
        narrow.copy(name, ZAN_NAME_BYTES - 1);
    } catch (...) { // NOLINT(bugprone-empty-catch): out of memory the name stays empty
    }
}

std::uint8_t GetSysBool(std::uint16_t index, std::uint8_t* flag) noexcept {
    if (index >= kSystemFlagCount) return 0;
    *flag = systemValues().flag(index);
    return 1;
}

std::uint8_t GetSysVar(std::uint16_t index, double* value) noexcept {
    *value = systemValues().variable(index);
    return *value != NO_VALUE ? 1 : 0;
}

void SetZanUserVarName(std::uint16_t index, const char* name) noexcept {
    const std::size_t channel = userChannelOf(index);
    const Context& context = libraryValues().context();
    if (name == nullptr || context.area == nullptr || !isUserChannel(channel)) return;
    try {
        const char* const end = std::find(name, name + ZAN_NAME_BYTES - 1, '\0');
        const std::u16string wide = context.platform.widen({name, static_cast<std::size_t>(end - name)});
        writeText(context.area->settings[channel].longName, wide);
        writeText(context.area->settings[channel].shortName, wide);
    } catch (...) { // NOLINT(bugprone-empty-catch): out of memory the names stay
    }
}

std::uint8_t SetZanVar(std::uint16_t channel, double value, std::uint16_t boat) noexcept {
    const Admission admission = admitWrite(channel, boat);
    if (admission.refused) return admission.answer;
    ValueStore& values = libraryValues();
    return values.store(channel, values.doubleToRecord(channel, value).record, boat, kNoTime) ? 1 : 0;
}

std::uint8_t SetZanVar2(std::uint16_t channel, const ChannelValue* record, std::uint16_t boat) noexcept {
    const Record copy = copyIn(record);
    const Admission admission = admitWrite(channel, boat);
    if (admission.refused) return admission.answer;
    return libraryValues().store(channel, copy, boat, kNoTime) ? 1 : 0;
}

int SetMOB(double latitude, double longitude) noexcept {
    return raiseManOverboard(libraryValues().context(), latitude, longitude);
}

} // extern "C"

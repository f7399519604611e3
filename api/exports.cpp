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

bool inRange(std::uint16_t channel, std::uint16_t boat) noexcept {
    return channel < kChannelCount && boat < kBoatCount;
}

SystemValues systemValues() noexcept {
    return SystemValues(libraryArea());
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

/// Calls `write` if channel and boat are in range and a client may write there; its answer or the refusal's.
template <class Write> std::uint8_t writeIfAdmitted(std::uint16_t channel, std::uint16_t boat, Write write) noexcept {
    const auto below = static_cast<std::uint16_t>(channel - 1);
    // KEPT: the answer is the low byte of the number before the channel, mostly true for a caller.
    if (below >= kChannelCount - 1 || boat >= kBoatCount) return static_cast<std::uint8_t>(below);
    const std::uint8_t isProtected = kCatalogue[channel].ownBoatProtected;
    if (boat == 0 && isProtected != 0 && !systemValues().inMode(kFixesFromClients, 0)) return isProtected;
    return write(libraryValues()) ? 1 : 0;
}

/// Out of line, so that a plain read needs no frame.
[[gnu::noinline]] std::uint8_t readAlternating(std::uint16_t channel, double* value, std::uint16_t boat,
                                               std::uint16_t* source) noexcept {
    *source = resolveAlternating(libraryValues(), channel);
    return readValue(libraryArea(), *source, boat, *value) ? 1 : 0;
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
    if (isAlternating(channel)) return readAlternating(channel, value, boat, source);
    *source = channel;
    return readValue(libraryArea(), channel, boat, *value) ? 1 : 0;
}

std::uint8_t GetZanVar2(std::uint16_t channel, ChannelValue* record, std::uint16_t boat,
                        std::uint16_t* source) noexcept {
    if (!inRange(channel, boat)) {
        *source = ZAN_NO_CHANNEL;
        copyOut(record, Record::ofNumber(NO_VALUE));
        return 0;
    }
    const ValueStore& values = libraryValues();
    *source = resolveAlternating(values, channel);
    const RecordResult found = values.fetch(*source, boat);
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
    return writeIfAdmitted(channel, boat,
                           [&](ValueStore& values) noexcept { return values.storeDouble(channel, value, boat); });
}

std::uint8_t SetZanVar2(std::uint16_t channel, const ChannelValue* record, std::uint16_t boat) noexcept {
    const Record copy = copyIn(record);
    return writeIfAdmitted(channel, boat,
                           [&](ValueStore& values) noexcept { return values.store(channel, copy, boat, kNoTime); });
}

int SetMOB(double latitude, double longitude) noexcept {
    return raiseManOverboard(libraryValues().context(), latitude, longitude);
}

} // extern "C"

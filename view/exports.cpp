// The functions of tallowmere_view: argument checks, texts and structures around the look at the section.
#include "core/channels/channel_lookup.hpp"
#include "core/channels/printable.hpp"
#include "core/channels/replay_sign.hpp"
#include "core/channels/system_values.hpp"
#include "core/channels/value_reading.hpp"
#include "core/config/alternate_table.hpp"
#include "units/unit_names.hpp"
#include "view/section_reader.hpp"
#include "view/value_look.hpp"

#include <tallowmere/view.h>

#include <cstring>
#include <new>
#include <string_view>

using namespace tallowmere;

struct tlm_view {
    SectionReader reader{platform::hostPlatform()};
};

namespace {

static_assert(TLM_VIEW_CHANNELS == kChannelCount && TLM_VIEW_BOATS == kBoatCount);
static_assert(TLM_VIEW_VARIABLES == kSystemVariableCount && TLM_VIEW_INTEGERS == kSystemIntegerCount);
static_assert(TLM_VIEW_FLAGS == kSystemFlagCount && TLM_VIEW_NO_PRECISION == kNoPrecision);

const SharedArea* areaOf(const tlm_view* view) noexcept {
    return view != nullptr ? view->reader.area() : nullptr;
}

/// Copies a text into a field that is zero. A UTF-16 unit makes three bytes of UTF-8 at most, and the fields are
/// that large; what would not fit is left out whole.
template <std::size_t Size> void copyText(char (&field)[Size], std::string_view text) noexcept {
    std::size_t length = std::min(text.size(), Size - 1);
    while (length < text.size() && length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) --length;
    std::memcpy(field, text.data(), length);
}
static_assert(sizeof(tlm_view_channel::short_name) >= 3 * 15 + 1 && sizeof(tlm_view_channel::long_name) >= 3 * 31 + 1);
static_assert(sizeof(tlm_view_boat::name) >= 3 * 31 + 1);

/// Runs what may run out of memory; its answer, or `otherwise`.
template <class Work, class Answer> Answer within(Work work, Answer otherwise) noexcept {
    try {
        return work();
    } catch (...) {
        return otherwise;
    }
}

void setCatalogue(const ChannelDef& row, tlm_view_channel& info) noexcept {
    info.channel = row.index;
    info.unit_class = static_cast<std::int16_t>(row.unitClass());
    info.timeout_seconds = row.timeoutSeconds;
    info.precision = row.precision;
    info.min_value = row.minValue;
    info.max_value = row.maxValue;
    info.storage_kind = static_cast<std::uint8_t>(storageKindOf(row.unitClass()));
    info.other_boats = row.compactIndex < kCompactSlotCount ? 1 : 0;
    info.own_boat_protected = row.ownBoatProtected;
    info.sensor = row.sensorFlag;
    info.log = row.logDefault;
}

std::uint8_t oneIfSet(const std::uint8_t& field) noexcept {
    return readOnce(field) != 0 ? 1 : 0;
}

void setFromSection(const SharedArea& area, tlm_view_channel& info) noexcept {
    const ChannelSetting& setting = area.settings[info.channel];
    info.unit_class = static_cast<std::int16_t>(unitClassOf(&area, info.channel));
    info.precision = readOnce(setting.precision);
    info.storage_kind = static_cast<std::uint8_t>(storageKindOf(&area, info.channel));
    info.log = oneIfSet(setting.log);
    info.written = oneIfSet(setting.written);
    info.blocked = oneIfSet(setting.blocked);
}

std::int32_t describe(const SharedArea* area, std::uint16_t channel, tlm_view_channel& info) noexcept {
    info = tlm_view_channel{};
    info.channel = TLM_VIEW_NO_CHANNEL;
    const ChannelDef* row = catalogueRow(channel);
    if (row == nullptr) return 0;
    setCatalogue(*row, info);
    if (area != nullptr) setFromSection(*area, info);
    return within(
        [&] {
            copyText(info.unit, unitNameOf(static_cast<UnitClass>(info.unit_class)).baseUnit);
            copyText(info.short_name, printable(shortNameOf(area, channel)));
            copyText(info.long_name, printable(longNameOf(area, channel)));
            return 1;
        },
        1);
}

using NameOf = std::u16string (*)(const SharedArea*, std::size_t);

std::uint16_t channelNamed(const SharedArea* area, std::string_view name, NameOf nameOf) {
    for (std::uint16_t channel = 0; channel < kChannelCount; ++channel)
        if (printable(nameOf(area, channel)) == name) return channel;
    return TLM_VIEW_NO_CHANNEL;
}

} // namespace

extern "C" {

std::int32_t tlm_view_interface(void) noexcept {
    return TLM_VIEW_INTERFACE;
}

tlm_view* tlm_view_open(void) noexcept {
    return new (std::nothrow) tlm_view;
}

void tlm_view_close(tlm_view* view) noexcept {
    delete view;
}

std::int32_t tlm_view_refresh(tlm_view* view) noexcept {
    return view != nullptr ? view->reader.refresh() : TLM_VIEW_NO_SECTION;
}

std::int32_t tlm_view_refresh_now(tlm_view* view) noexcept {
    return view != nullptr ? view->reader.refreshNow() : TLM_VIEW_NO_SECTION;
}

std::int32_t tlm_view_state(const tlm_view* view) noexcept {
    return view != nullptr ? view->reader.state() : TLM_VIEW_NO_SECTION;
}

std::uint32_t tlm_view_generation(const tlm_view* view) noexcept {
    return view != nullptr ? view->reader.generation() : 0;
}

std::int64_t tlm_view_now(void) noexcept {
    return platform::hostPlatform().now();
}

std::uint64_t tlm_view_host_window(const tlm_view* view) noexcept {
    const SharedArea* const area = areaOf(view);
    return area != nullptr ? readOnce(area->hostWindow) : 0;
}

std::int32_t tlm_view_is_replay(const tlm_view* view) noexcept {
    return isReplay(areaOf(view)) ? 1 : 0;
}

std::int32_t tlm_view_get_channel(const tlm_view* view, std::uint16_t channel, tlm_view_channel* info) noexcept {
    return describe(areaOf(view), channel, *info);
}

std::int32_t tlm_view_get_catalogue(std::uint16_t channel, tlm_view_channel* info) noexcept {
    return describe(nullptr, channel, *info);
}

std::uint16_t tlm_view_find_channel(const tlm_view* view, const char* name) noexcept {
    if (name == nullptr || *name == '\0') return TLM_VIEW_NO_CHANNEL;
    return within(
        [&] {
            const std::uint16_t found = channelNamed(areaOf(view), name, shortNameOf);
            return found < kChannelCount ? found : channelNamed(areaOf(view), name, longNameOf);
        },
        std::uint16_t{TLM_VIEW_NO_CHANNEL});
}

std::uint16_t tlm_view_source(const tlm_view* view, std::uint16_t channel) noexcept {
    return resolveAlternating(areaOf(view), channel);
}

std::uint16_t tlm_view_boat_count(const tlm_view* view) noexcept {
    const SharedArea* const area = areaOf(view);
    return area != nullptr ? static_cast<std::uint16_t>(boatsInUse(*area)) : std::uint16_t{0};
}

std::int32_t tlm_view_get_boat(const tlm_view* view, std::uint16_t boat, tlm_view_boat* info) noexcept {
    *info = tlm_view_boat{};
    const SharedArea* const area = areaOf(view);
    if (area == nullptr || boat >= kBoatCount) return 0;
    const BoatEntry& entry = area->boats[boat];
    info->boat = boat;
    info->in_use = boat < boatsInUse(*area) ? 1 : 0;
    info->has_data = oneIfSet(entry.hasData);
    info->mmsi = readOnce(entry.mmsi);
    info->colour = readOnce(entry.colour);
    return within(
        [&] {
            copyText(info->name, printable(readText(entry.name)));
            return 1;
        },
        1);
}

std::int32_t tlm_view_find_boat(const tlm_view* view, const char* name) noexcept {
    const SharedArea* const area = areaOf(view);
    if (area == nullptr || name == nullptr || *name == '\0') return -1;
    return within(
        [&] {
            for (std::int32_t boat = 0; boat < static_cast<std::int32_t>(kBoatCount); ++boat)
                if (printable(readText(area->boats[boat].name)) == name) return boat;
            return -1;
        },
        -1);
}

std::int32_t tlm_view_read(const tlm_view* view, std::uint16_t channel, std::uint16_t boat,
                           tlm_view_value* value) noexcept {
    *value = lookAtValue(areaOf(view), channel, boat, platform::hostPlatform().now());
    return value->state != TLM_VIEW_NONE ? 1 : 0;
}

std::int32_t tlm_view_read_group(const tlm_view* view, std::uint16_t boat, const std::uint16_t* channels,
                                 std::uint32_t count, tlm_view_value* values, tlm_view_group* group) noexcept {
    tlm_view_group read =
        lookAtGroup(areaOf(view), {channels, count}, boat, platform::hostPlatform().now(), {values, count});
    read.section_generation = tlm_view_generation(view);
    if (group != nullptr) *group = read;
    return static_cast<std::int32_t>(read.quiet);
}

std::int32_t tlm_view_get_variable(const tlm_view* view, std::uint16_t index, double* value) noexcept {
    *value = systemVariable(areaOf(view), index);
    return *value != NO_VALUE ? 1 : 0;
}

std::int32_t tlm_view_get_integer(const tlm_view* view, std::uint16_t index, std::int32_t* value) noexcept {
    *value = systemInteger(areaOf(view), index);
    return areaOf(view) != nullptr && index < kSystemIntegerCount ? 1 : 0;
}

std::int32_t tlm_view_get_flag(const tlm_view* view, std::uint16_t index, std::uint8_t* value) noexcept {
    *value = systemFlag(areaOf(view), index);
    return areaOf(view) != nullptr && index < kSystemFlagCount ? 1 : 0;
}

std::int32_t tlm_view_get_mob(const tlm_view* view, tlm_view_mob* mob) noexcept {
    *mob = tlm_view_mob{};
    mob->latitude = mob->longitude = NO_VALUE;
    const SharedArea* const area = areaOf(view);
    if (area == nullptr) return 0;
    mob->latitude = readOnce(area->mob.latitude);
    mob->longitude = readOnce(area->mob.longitude);
    mob->flag_a = readOnce(area->mob.flagA);
    mob->flag_b = readOnce(area->mob.flagB);
    // In no known character set, so that only ASCII can be told.
    for (std::size_t i = 0; i + 1 < sizeof mob->name; ++i) {
        const char c = readOnce(area->mob.name[i]);
        if (c == '\0') break;
        mob->name[i] = c >= 0x20 && c < 0x7F ? c : '?';
    }
    return mob->latitude != NO_VALUE && mob->longitude != NO_VALUE ? 1 : 0;
}

} // extern "C"

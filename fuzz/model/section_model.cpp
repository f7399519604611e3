#include "fuzz/model/section_model.hpp"

#include <bit>
#include <cmath>
#include <limits>

namespace tallowmere::fuzz {
namespace {

constexpr double kNoValue = 32767.0;
constexpr std::int64_t kNoTicks = std::numeric_limits<std::int64_t>::max();
constexpr double kTicksADay = 8.64e11;
constexpr double kDaysTo1899 = 109205.0;
enum Kind { kByte, kDouble, kInteger, kTime };

double numberOf(const ModelRecord& record) {
    return std::bit_cast<double>(record.payload);
}
std::int64_t ticksOf(const ModelRecord& record) {
    return static_cast<std::int64_t>(record.payload);
}
ModelRecord ofNumber(double value) {
    return {kDouble, std::bit_cast<std::uint64_t>(value)};
}

bool isTime(int unitClass) {
    return unitClass == 1 || unitClass == 2;
}

/// 360 into range by one turn at most, as a write does it before anything else.
double oneTurn(int unitClass, double value) {
    if (unitClass == 6) {
        if (value < 0 && value + 360 >= 0) return value + 360;
        if (value >= 360 && value - 360 <= 360) return value - 360;
    }
    if (unitClass == 7 || unitClass == 13) {
        if (value < -180 && value + 360 >= -180) return value + 360;
        if (value > 180 && value - 360 <= 180) return value - 360;
    }
    return value;
}

/// The same as the correction by calibration ends with: one step whatever comes of it; no negative speeds.
double afterCorrection(int unitClass, double value) {
    switch (unitClass) {
    case 6:
        return value < 0 ? value + 360 : value >= 360 ? value - 360 : value;
    case 7:
    case 13:
        return value > 180 ? value - 360 : value < -180 ? value + 360 : value;
    case 12:
    case 20:
        return value < 0 ? 0 : value;
    default:
        return value;
    }
}

void appendUtf8(std::string& text, char32_t c) {
    if (c < 0x80) {
        text += static_cast<char>(c);
    } else if (c < 0x800) {
        text += static_cast<char>(0xC0 + c / 64);
        text += static_cast<char>(0x80 + c % 64);
    } else if (c < 0x10000) {
        text += static_cast<char>(0xE0 + c / 4096);
        text += static_cast<char>(0x80 + c / 64 % 64);
        text += static_cast<char>(0x80 + c % 64);
    } else {
        text += static_cast<char>(0xF0 + c / 262144);
        text += static_cast<char>(0x80 + c / 4096 % 64);
        text += static_cast<char>(0x80 + c / 64 % 64);
        text += static_cast<char>(0x80 + c % 64);
    }
}

/// UTF-8 of at most `room` bytes, no character cut; a lone surrogate is a question mark.
std::string narrow(std::u16string_view text, std::size_t room) {
    std::string result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        char32_t c = text[at];
        const bool high = c >= 0xD800 && c < 0xDC00;
        if (high && at + 1 < text.size() && text[at + 1] >= 0xDC00 && text[at + 1] < 0xE000)
            c = 0x10000 + (c - 0xD800) * 1024 + (text[++at] - 0xDC00u);
        else if (c >= 0xD800 && c < 0xE000)
            c = U'?';
        std::string longer = result;
        appendUtf8(longer, c);
        if (longer.size() > room) return result;
        result = longer;
    }
    return result;
}

/// The character at the front of UTF-8 and how many bytes it has; 0 bytes when there is none well formed.
std::size_t frontCharacter(std::string_view text, char32_t& c) {
    for (std::size_t length = 1; length <= std::min<std::size_t>(4, text.size()); ++length) {
        // Decode leniently, then accept only what encodes to the same bytes again.
        const auto lead = static_cast<unsigned char>(text.front());
        c = length == 1 ? lead : lead % (1u << (7 - length));
        for (std::size_t at = 1; at < length; ++at) c = c * 64 + static_cast<unsigned char>(text[at]) % 64;
        if (c > 0x10FFFF || (c >= 0xD800 && c < 0xE000)) continue;
        std::string again;
        appendUtf8(again, c);
        if (again == text.substr(0, length)) return length;
    }
    return 0;
}

std::u16string widen(std::string_view text) {
    std::u16string result;
    while (!text.empty()) {
        char32_t c = 0;
        const std::size_t length = frontCharacter(text, c);
        if (length == 0) {
            result += u'\uFFFD';
        } else if (c < 0x10000) {
            result += static_cast<char16_t>(c);
        } else {
            result += static_cast<char16_t>(0xD800 + (c - 0x10000) / 1024);
            result += static_cast<char16_t>(0xDC00 + (c - 0x10000) % 1024);
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return result;
}

} // namespace

void SectionModel::setText(std::size_t offset, std::size_t room, std::u16string_view text) {
    const std::size_t length = std::min(text.size(), room - 1);
    for (std::size_t at = 0; at < length; ++at) set<char16_t>(offset + 2 * at, text[at]);
    set<char16_t>(offset + 2 * length, u'\0');
}

std::u16string SectionModel::text(std::size_t offset, std::size_t room) const {
    std::u16string result;
    for (std::size_t at = 0; at + 1 < room; ++at) {
        const auto c = get<char16_t>(offset + 2 * at);
        if (c == u'\0') break;
        result += c;
    }
    return result;
}

// --- records

std::int16_t SectionModel::storedClass(std::size_t channel) const {
    return get<std::int16_t>(place::unitClass(channel));
}

std::int16_t SectionModel::unitClass(std::size_t channel) const {
    if (channel >= kChannels) return 0;
    return channel >= 172 && channel <= 202 ? storedClass(channel) : kRows[channel].unitClass;
}

int SectionModel::storageKind(std::size_t channel) const {
    if (channel >= kChannels) return kDouble;
    const std::int16_t stored = storedClass(channel);
    if (isTime(stored)) return kTime;
    return stored == 11 ? kInteger : kDouble;
}

ModelRecord SectionModel::none(int kind) {
    if (kind == kTime) return {kTime, static_cast<std::uint64_t>(kNoTicks)};
    if (kind == kInteger) return {kInteger, 32767};
    return ofNumber(kNoValue);
}

bool SectionModel::holds(int kind, const ModelRecord& record) {
    if (kind == kTime) return ticksOf(record) != kNoTicks;
    if (kind == kInteger) return static_cast<std::int32_t>(record.payload) != 32767;
    return numberOf(record) != kNoValue;
}

ModelRecord SectionModel::fromDouble(std::size_t channel, double value) const {
    const int kind = storageKind(channel);
    if (value == kNoValue) return none(kind);
    if (kind == kDouble) return ofNumber(value);
    if (kind == kInteger) {
        const double whole = std::round(value);
        if (!(whole >= -2147483648.0 && whole <= 2147483647.0)) return none(kind);
        return {kInteger, static_cast<std::uint32_t>(static_cast<std::int32_t>(whole))};
    }
    const int unit = unitClass(channel);
    if (!isTime(unit) || (unit == 1 && value == 0.0)) return none(kind);
    const double ticks = std::round(unit == 1 ? (value + kDaysTo1899) * kTicksADay : value * kTicksADay);
    if (!(ticks >= -9223372036854775808.0 && ticks < 9223372036854775808.0)) return none(kind);
    return {kTime, static_cast<std::uint64_t>(static_cast<std::int64_t>(ticks))};
}

bool SectionModel::toDouble(std::size_t channel, const ModelRecord& record, double& value) const {
    value = kNoValue;
    if (channel >= kChannels || !holds(storageKind(channel), record)) return false;
    switch (record.header & 0xFF) {
    case kByte:
        value = static_cast<double>(record.payload & 0xFF);
        break;
    case kDouble:
        value = numberOf(record);
        break;
    case kInteger:
        value = static_cast<std::int32_t>(record.payload);
        break;
    case kTime: {
        const std::int64_t ticks = ticksOf(record);
        if (unitClass(channel) == 1) {
            const auto seconds = (static_cast<__int128>(ticks) + 5'000'000) / 10'000'000;
            value =
                ticks == kNoTicks
                    ? 0.0
                    : static_cast<double>(static_cast<std::int64_t>(seconds * 10'000'000)) / kTicksADay - kDaysTo1899;
        } else if (unitClass(channel) == 2) {
            value =
                ticks == kNoTicks ? std::numeric_limits<double>::quiet_NaN() : static_cast<double>(ticks) / kTicksADay;
        }
        break;
    }
    default:
        break;
    }
    return value != kNoValue;
}

bool SectionModel::fetch(std::size_t channel, std::size_t boat, ModelRecord& record) const {
    const int kind = storageKind(channel);
    record = none(kind);
    if (channel < kChannels && boat < get<std::uint32_t>(place::kBoatCount)) {
        if (const auto found = valuePlace(channel, boat)) record = get<ModelRecord>(found->record);
    }
    return holds(kind, record);
}

// --- writing

void SectionModel::stampTime() {
    for (const std::size_t boat : {0u, 1u}) {
        set(place::fullStamp(0, boat), now);
        set(place::fullValue(0, boat) + 8, now);
        set(place::fullSecond(0, boat) + 8, std::int64_t{0});
        set(place::fullThird(0, boat) + 8, now);
    }
    for (std::size_t boat = 2; boat < std::min<std::size_t>(get<std::uint32_t>(place::kBoatCount), kBoats); ++boat) {
        set(place::compactStamp(0, boat), now);
        set(place::compactValue(0, boat) + 8, now);
        set(place::compactThird(0, boat) + 8, now);
    }
}

bool SectionModel::put(std::size_t channel, const ModelRecord& record, std::size_t boat) {
    const auto found = valuePlace(channel, boat);
    if (!found) return false;
    set(found->stamp, now);
    set(found->record, record);
    if (holds(storageKind(channel), record)) {
        set<std::uint8_t>(place::hasData(boat), 1);
        if (get<std::uint32_t>(place::kBoatCount) <= boat)
            set<std::uint32_t>(place::kBoatCount, static_cast<std::uint32_t>(boat + 1));
    }
    return true;
}

/// Of the header only the kind byte is promised.
void SectionModel::putWithFreeHeader(std::size_t channel, std::uint64_t payload, std::size_t boat) {
    if (put(channel, {kByte, payload}, boat)) watched_.allow(valuePlace(channel, boat)->record + 1, 7);
}

void SectionModel::toe(std::size_t boat, double port, double starboard) {
    if (storageKind(284) == kDouble) putWithFreeHeader(284, std::bit_cast<std::uint64_t>(port - starboard), boat);
}

void SectionModel::rate(std::size_t source, std::size_t target, std::size_t flag, double value, std::size_t boat) {
    ModelRecord previous;
    const auto found = valuePlace(source, boat);
    if (get<std::uint8_t>(place::flag(flag)) == 0 || !fetch(source, boat, previous) || !found) return;
    const auto before = get<std::int64_t>(found->stamp);
    if (before == kNoTicks) return;
    const auto seconds = (static_cast<__int128>(now) - before) / 10'000'000;
    if (seconds <= 0) return;
    const double change = (value - numberOf(previous)) / static_cast<double>(static_cast<std::uint64_t>(seconds));
    put(target, {static_cast<std::uint64_t>(before), std::bit_cast<std::uint64_t>(change)}, boat);
}

double SectionModel::derivedFrom(std::size_t channel, double value, std::size_t boat) {
    ModelRecord other;
    switch (channel) {
    case 282:
        if (fetch(283, boat, other)) toe(boat, value, numberOf(other));
        break;
    case 283:
        if (fetch(282, boat, other)) toe(boat, numberOf(other), value);
        break;
    case 2:
        if (get<std::uint8_t>(place::flag(33)) != 0 && fetch(24, 0, other)) return value - numberOf(other);
        break;
    case 13:
        rate(13, 32, 27, value, boat);
        break;
    case 18:
        rate(18, 278, 24, value, boat);
        break;
    case 19:
        rate(19, 277, 24, value, boat);
        break;
    default:
        break;
    }
    return value;
}

double SectionModel::numberRules(std::size_t channel, double value, std::size_t boat) {
    const ChannelRow& row = kRows[channel];
    value = oneTurn(unitClass(channel), value);
    if (row.low != row.high && (value < row.low || value > row.high)) return kNoValue;
    // No item is in use in a client, so a correction is only what it ends with.
    if (value != kNoValue && get<std::uint8_t>(place::calibrate(channel)) != 0)
        value = afterCorrection(unitClass(channel), value);
    return value == kNoValue ? value : derivedFrom(channel, value, boat);
}

bool SectionModel::store(std::size_t channel, ModelRecord record, std::size_t boat) {
    stampTime();
    if (get<std::uint8_t>(place::blocked(channel)) != 0) return false;
    if (get<std::uint8_t>(place::flag(52)) != 0 && get<std::uint8_t>(place::writeLockable(channel)) != 0) return false;
    const int kind = storageKind(channel);
    if (holds(kind, record)) {
        if (kind == kTime && channel == 146 && storageKind(256) == kTime)
            putWithFreeHeader(256, static_cast<std::uint64_t>(now) - record.payload, boat);
        if (kind == kDouble)
            record.payload = std::bit_cast<std::uint64_t>(numberRules(channel, numberOf(record), boat));
    }
    const bool stored = put(channel, record, boat);
    if (holds(kind, record)) {
        set<std::uint8_t>(place::written(channel), 1);
        set<std::uint8_t>(place::kFlagSomethingWritten, 1);
    }
    return stored;
}

bool SectionModel::admits(std::uint16_t channel, std::uint16_t boat, std::uint8_t& answer) const {
    answer = static_cast<std::uint8_t>((channel + 0xFFFFu) & 0xFF);
    if (channel == 0 || channel >= kChannels || boat >= kBoats) return false;
    answer = 1;
    return boat != 0 || !kRows[channel].isProtected || get<std::int32_t>(place::integer(6)) == 3;
}

std::uint8_t SectionModel::setVar(std::uint16_t channel, double value, std::uint16_t boat) {
    std::uint8_t answer = 0;
    if (!admits(channel, boat, answer)) return answer;
    return store(channel, fromDouble(channel, value), boat) ? 1 : 0;
}

std::uint8_t SectionModel::setVar2(std::uint16_t channel, const ModelRecord& record, std::uint16_t boat) {
    std::uint8_t answer = 0;
    if (!admits(channel, boat, answer)) return answer;
    return store(channel, record, boat) ? 1 : 0;
}

// --- reading

ModelReading SectionModel::getVar(std::uint16_t channel, std::uint16_t boat) const {
    if (channel >= kChannels || boat >= kBoats) return {false, true, kNoValue, 32767};
    ModelReading reading;
    reading.source = resolve(channel, true);
    ModelRecord record;
    if (!fetch(reading.source, boat, record)) return reading;
    reading.touchesValue = true;
    reading.holds = toDouble(reading.source, record, reading.value);
    return reading;
}

bool SectionModel::getVar2(std::uint16_t channel, std::uint16_t boat, ModelRecord& record,
                           std::uint16_t& source) const {
    source = 32767;
    record = none(kDouble);
    if (channel >= kChannels || boat >= kBoats) return false;
    source = resolve(channel, true);
    return fetch(source, boat, record);
}

void SectionModel::setUserName(std::uint16_t index, std::string_view name) {
    const std::size_t channel = index < 172 ? index + 172u : index;
    if (channel < 172 || channel > 203) return;
    name = name.substr(0, 15);
    const std::u16string wide = widen(name.substr(0, name.find('\0')));
    setText(place::longName(channel), 32, wide);
    setText(place::shortName(channel), 16, wide);
}

std::string SectionModel::name(std::uint16_t channel) const {
    if (channel >= kChannels) return {};
    std::u16string name = text(place::shortName(channel), 16);
    if (name.empty()) name = kRows[channel].shortName;
    std::string bytes = narrow(name, 15);
    bytes.resize(16);
    return bytes;
}

bool SectionModel::sysVar(std::uint16_t index, double& value) const {
    value = index < 80 ? get<double>(place::variable(index)) : kNoValue;
    return value != kNoValue;
}

bool SectionModel::sysBool(std::uint16_t index, std::uint8_t& flag) const {
    if (index < 60) flag = get<std::uint8_t>(place::flag(index));
    return index < 60;
}

int SectionModel::manOverboard(double latitude, double longitude) {
    if (get<std::uint64_t>(place::kHostWindow) == 0) return 0;
    for (std::size_t at = 0; at < 4; ++at) set<char>(place::kMobName + at, "MOB"[at]);
    watched_.allow(place::kMobName + 4, 27); // not promised
    set<char>(place::kMobName + 31, '\0');
    set(place::kMobLatitude, latitude);
    set(place::kMobLongitude, longitude);
    set<std::uint8_t>(place::kMobFlagA, 1);
    set<std::uint8_t>(place::kMobFlagB, 1);
    return postResult;
}

// --- system values

bool SectionModel::setVariable(std::size_t index, double value) {
    if (index >= 80) return false;
    if (index == 0 && !(value >= 1.0)) value = 1.0;
    if (index == 5 && !(value >= 0.01)) value = 0.01;
    if (index == 5 && value > 10.0) value = 10.0;
    set(place::variable(index), value);
    return true;
}

void SectionModel::setFlag(std::size_t index, std::uint8_t value) {
    if (index < 60) set(place::flag(index), value);
}

void SectionModel::setInteger(std::size_t index, std::int32_t value) {
    if (index >= 13) return;
    constexpr std::int32_t kFree = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kMost[] = {kFree, 2, 2, 5, 5, 1, 4, kFree, 2, 4};
    if (index < std::size(kMost)) value = std::min(std::max(value, 0), kMost[index]);
    set(place::integer(index), value);
}

// --- alternating channels

bool SectionModel::ownNumber(std::size_t channel, double& value) const {
    ModelRecord record;
    return storageKind(channel) == kDouble && fetch(channel, 0, record) && toDouble(channel, record, value);
}

std::uint16_t SectionModel::chooseCell(std::size_t row) const {
    std::array<std::uint16_t, 9> cell{};
    for (std::size_t column = 0; column < cell.size(); ++column) {
        const auto stored = get<std::int32_t>(place::alternateCell(row, column));
        cell[column] = stored >= 1 && stored <= 413 ? static_cast<std::uint16_t>(stored) : std::uint16_t{32767};
    }
    const auto given = [&](std::size_t column) { return cell[column] != 32767; };
    if (get<std::uint8_t>(place::flag(46)) != 0 && given(8)) return cell[8];
    ModelRecord countdown;
    if (storageKind(204) == kTime && fetch(204, 0, countdown) && ticksOf(countdown) >= 0 && given(5)) return cell[5];
    const std::size_t byFlag = get<std::uint8_t>(place::flag(36)) != 0 ? 0 : 1;
    if (given(byFlag)) return cell[byFlag];
    double wind = 0.0;
    if (ownNumber(4, wind)) {
        const double a = std::fabs(wind);
        double target = 0.0;
        if (ownNumber(237, target)) {
            const double t = std::fabs(target);
            const double m = std::fabs(get<double>(place::variable(7)));
            if (a < 90 && given(2) && m + t > a) return cell[2];
            if (a > 90 && given(4) && a > t - m) return cell[4];
            if (given(3)) return cell[3];
        }
        if (wind < 0 && given(6)) return cell[6];
        if (!(wind < 0) && given(7)) return cell[7];
        if (a < 90 && given(2)) return cell[2];
        if (a >= 90 && given(4)) return cell[4];
    }
    for (const std::uint16_t channel : cell)
        if (channel != 32767) return channel;
    return 32767;
}

std::uint16_t SectionModel::resolve(std::uint16_t channel, bool mayRecurse) const {
    if (channel < 117 || channel > 126) return channel < kChannels ? channel : std::uint16_t{32767};
    const std::uint16_t chosen = chooseCell(channel - 117u);
    return mayRecurse && chosen != 32767 ? resolve(chosen, false) : chosen;
}

// --- a new section

void SectionModel::create() {
    for (std::size_t at = 0; at < test::kSectionBytes; at += 8) set<std::uint64_t>(at, 0);
    set<std::uint32_t>(253178, 32767);
    constexpr double kFirst[] = {15.85, 15.8, 4.4, 0, 3.0, 1.0, 1.0, 10.0, 5.0, 5.0, 5.0, 3.0};
    for (std::size_t index = 0; index < 80; ++index)
        set(place::variable(index), index < std::size(kFirst) ? kFirst[index] : kNoValue);
    set<std::int32_t>(place::integer(6), 5);
    set<std::int32_t>(place::integer(10), 60);
    for (const std::size_t flag : {0u, 1u, 3u, 7u, 21u, 40u, 41u, 42u}) set<std::uint8_t>(place::flag(flag), 1);
    for (std::size_t index = 0; index < 15; ++index) set(6256 + 8 * index, kNoTicks);
    for (std::size_t event = 0; event < 64; ++event) {
        set(2040 + 48 * event + 8, kNoTicks);
        for (std::size_t value = 0; value < 3; ++value) set(2040 + 48 * event + 24 + 8 * value, kNoValue);
    }
    for (std::size_t cell = 0; cell < 90; ++cell) set<std::int32_t>(place::kAlternates + 4 * cell, 32767);
    set(place::kMobLatitude, kNoValue);
    set(place::kMobLongitude, kNoValue);
    for (std::size_t boat = 0; boat < kBoats; ++boat) {
        set<std::uint32_t>(place::boat(boat), 32767);
        set<std::uint32_t>(place::colour(boat), 0x90EE90);
        // Then the boat list, of which there is no file.
        if (boat > 0) {
            const std::string number = std::to_string(boat);
            setText(place::boatName(boat), 32, u"Boat " + std::u16string(number.begin(), number.end()));
        }
    }
    for (const ChannelRow& row : kRows) {
        const std::size_t channel = row.index;
        set<std::uint16_t>(place::precision(channel), row.precision);
        set<std::int16_t>(place::unitClass(channel), row.unitClass);
        // Channel 0 is left out where channels.xml, of which there is no file, resets the log flags.
        if (channel > 0) set<std::uint8_t>(place::log(channel), row.log);
        const ModelRecord empty = none(storageKind(channel));
        set(place::fullStamp(channel, 0), kNoTicks);
        for (const std::size_t place :
             {place::fullValue(channel, 0), place::fullSecond(channel, 0), place::fullThird(channel, 0)})
            set(place, empty);
        if (row.compactSlot >= 34) continue;
        for (std::size_t boat = 2; boat < kBoats; ++boat) {
            set(place::compactStamp(row.compactSlot, boat), kNoTicks);
            set(place::compactValue(row.compactSlot, boat), empty);
            set(place::compactThird(row.compactSlot, boat), empty);
        }
    }
}

} // namespace tallowmere::fuzz

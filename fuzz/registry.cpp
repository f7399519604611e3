// The settings file of Linux: any bytes are read, changed and read again, and the core settings are taken from
// them into a section.
#include "fuzz/support/reader_section.hpp"
#include "platform/posix/registry_document.hpp"
#include "settings/core_settings.hpp"
#include "settings/reg_ex.hpp"

#include <cstring>
#include <string>

namespace tallowmere::fuzz {
namespace {

using platform::SettingsType;
using platform::posix::RegistryDocument;
using platform::posix::RegistryValue;
using platform::posix::RegistryValues;

constexpr const char16_t* kKeys[] = {kCoreKey, kTrackKey, kCalibrationKey};

bool same(const RegistryValues& a, const RegistryValues& b) {
    return std::ranges::equal(a, b, [](const auto& left, const auto& right) {
        return left.first == right.first && left.second.type == right.second.type &&
               left.second.bytes == right.second.bytes;
    });
}

std::vector<std::byte> bytesOf(const void* data, std::size_t size) {
    const auto* first = static_cast<const std::byte*>(data);
    return {first, first + size};
}

/// After a change a key holds just that beside what it held, and no other key has changed.
void checkChange(const RegistryDocument& before, const std::u16string& path, const std::u16string& name,
                 const std::string& line, const RegistryValue& value) {
    RegistryDocument after = before;
    if (!after.setValue(path, name, line)) fail("a value was not taken");
    for (const char16_t* key : kKeys) {
        std::optional<RegistryValues> expected = before.values(key);
        if (key == path) {
            if (!expected) expected.emplace();
            expected->insert_or_assign(platform::posix::foldName(name), value);
        }
        const std::optional<RegistryValues> found = after.values(key);
        if (found.has_value() != expected.has_value()) fail("a change made or lost a key");
        if (found && !same(*found, *expected)) fail("a change changed something else");
    }
}

void changeText(const RegistryDocument& document) {
    const std::u16string location = u"/boat/b\\\"\u00E9";
    checkChange(document, kCoreKey, u"Location", platform::posix::writeStringLine(u"Location", location),
                RegistryValue{SettingsType::String, bytesOf(location.c_str(), 2 * location.size() + 2)});
}

void changeOddText(const RegistryDocument& document) {
    const std::u16string odd(u"a\r\nb\0c", 6);
    checkChange(document, kTrackKey, u"bTrack", platform::posix::writeStringLine(u"bTrack", odd),
                RegistryValue{SettingsType::String, bytesOf(odd.c_str(), 2 * odd.size() + 2)});
}

void changeNumber(const RegistryDocument& document) {
    const std::uint32_t number = 0xFEDCBA98;
    checkChange(document, kTrackKey, u"TrackMin", platform::posix::writeDwordLine(u"TrackMin", number),
                RegistryValue{SettingsType::Dword, bytesOf(&number, 4)});
}

void addKey(const RegistryDocument& document) {
    RegistryDocument after = document;
    if (!document.values(kCalibrationKey) && (!after.addKey(kCalibrationKey) || !after.values(kCalibrationKey)))
        fail("a key that was made is not there");
}

/// One of the changes, by the input's size: each costs several readings of the text.
void change(const RegistryDocument& document, std::size_t size) {
    constexpr void (*kChanges[])(const RegistryDocument&) = {changeText, changeOddText, changeNumber, addKey};
    kChanges[size % std::size(kChanges)](document);
}

void readInto(ReaderSection& reader, const RegistryDocument& document) {
    reader.platform.settings.clear();
    if (auto values = document.values(kCoreKey))
        reader.platform.settings.emplace(platform::posix::foldPath(kCoreKey), std::move(*values));
    readCoreSettings(reader.context());
    const SharedArea& area = *reader.watched.area();
    for (const std::uint8_t flag : area.systemFlags)
        if (flag > 1) fail("a flag is no flag");
    if (!(area.systemVariables[0] >= 1.0)) fail("the boat's length below its limit");
    if (!(area.systemVariables[5] >= 0.01 && area.systemVariables[5] <= 10.0)) fail("variable 5 beyond its limits");
    reader.watched.allow(24, 520);   // the marks file's path
    reader.watched.allow(608, 1040); // the database's and the data folder's
    reader.watched.allow(5504, 144); // 18 variables
    reader.watched.allow(6144, 44);  // 11 integers
    reader.watched.allow(6196, 34);  // 34 flags
    reader.finish("the core settings wrote elsewhere");
}

} // namespace

void registry(Bytes input) {
    static ReaderSection reader{{{24, 6196 + 60}}};
    const RegistryDocument document(platform::posix::decodeRegistryFile(std::string(textOf(input))));
    change(document, input.size());
    readInto(reader, document);
}

} // namespace tallowmere::fuzz

// channels.xml through the real parser into a section: only what the file may set may change.
#include "core/config/channels_file.hpp"
#include "fuzz/support/reader_section.hpp"

namespace tallowmere::fuzz {
namespace {

constexpr std::size_t kSettings = 6380;
constexpr std::size_t kSettingBytes = 108;
constexpr std::size_t kLongNameUnits = 32;
constexpr std::size_t kShortNameUnits = 16;

void checkUserChannel(const ChannelSetting& setting, std::size_t channel) {
    if (std::find(setting.longName, setting.longName + kLongNameUnits, u'\0') == setting.longName + kLongNameUnits)
        fail("unended long name", channel);
    if (std::find(setting.shortName, setting.shortName + kShortNameUnits, u'\0') == setting.shortName + kShortNameUnits)
        fail("unended short name", channel);
}

} // namespace

void channels(Bytes input) {
    static ReaderSection reader{{{kSettings, kSettingBytes * kChannelCount}}};
    reader.platform.document = documentFile(textOf(input));
    readChannels(reader.context());
    for (std::size_t channel = 1; channel < kChannelCount; ++channel) {
        const std::size_t setting = kSettings + kSettingBytes * channel;
        const ChannelSetting& found = reader.watched.area()->settings[channel];
        if (found.log > 1) fail("log flag is no flag", channel);
        if (found.precision > 255) fail("precision out of range", channel);
        reader.watched.allow(setting + 3, 1); // log
        reader.watched.allow(setting + 6, 4); // precision, damping
        if (channel < 172 || channel > 203) continue;
        checkUserChannel(found, channel);
        reader.watched.allow(setting + 10, 2 + 2 * kLongNameUnits + 2 * kShortNameUnits); // class and names
    }
    reader.finish("channels.xml wrote elsewhere");
}

} // namespace tallowmere::fuzz

#include "core/config/channels_file.hpp"

#include "core/channels/channel_lookup.hpp"
#include "core/config/config_document.hpp"
#include "core/config/number_scanner.hpp"
#include "core/config/precision_rule.hpp"

namespace tallowmere {
namespace {

void resetChannels(SharedArea& area) noexcept {
    for (std::size_t channel = 1; channel < kChannelCount; ++channel) {
        ChannelSetting& setting = area.settings[channel];
        writeOnce(setting.log, kCatalogue[channel].logDefault);
        writeOnce(setting.damping, 0);
        writeOnce(setting.precision, kCatalogue[channel].precision);
    }
}

/// The channel that an "id" selects; 0, which has no settings, for a number that no channel has.
std::size_t selectChannel(std::u16string_view id) noexcept {
    const std::int32_t number = leadingInteger(id);
    return number >= 1 && number < static_cast<std::int32_t>(kChannelCount) ? static_cast<std::size_t>(number) : 0;
}

void setPrecision(SharedArea& area, std::size_t channel, std::u16string_view text) noexcept {
    const std::int32_t precision = leadingInteger(text);
    if (precision < 0 || precision > kLargestPrecision || isAlternating(channel)) return;
    if (hasOwnFormat(unitClassOf(&area, channel))) return;
    writeOnce(area.settings[channel].precision, static_cast<std::uint16_t>(precision));
}

void applyAttribute(SharedArea& area, std::size_t channel, const platform::XmlAttribute& attribute) noexcept {
    const auto& [name, value] = attribute;
    ChannelSetting& setting = area.settings[channel];
    if (equalsIgnoringCase(name, u"log"))
        writeOnce(setting.log, equalsIgnoringCase(value, u"false") ? 0 : 1);
    else if (equalsIgnoringCase(name, u"prec"))
        setPrecision(area, channel, value);
    else if (kCatalogue[channel].dampable != 0 && equalsIgnoringCase(name, u"damp"))
        writeOnce(setting.damping, static_cast<std::uint16_t>(leadingInteger(value)));
    else if (isUserChannel(channel) && equalsIgnoringCase(name, u"type"))
        writeOnce(setting.unitClass, static_cast<std::int16_t>(leadingInteger(value)));
    else if (isUserChannel(channel) && equalsIgnoringCase(name, u"user")) {
        writeText(setting.longName, value);
        writeText(setting.shortName, value);
    }
}

/// Attributes count in the order of the document: those before "id" apply to no channel.
void applyChannel(SharedArea& area, const platform::XmlElement& element) noexcept {
    std::size_t channel = 0;
    for (const platform::XmlAttribute& attribute : element.attributes) {
        if (attribute.value.empty()) continue;
        if (equalsIgnoringCase(attribute.name, u"id"))
            channel = selectChannel(attribute.value);
        else if (channel != 0)
            applyAttribute(area, channel, attribute);
    }
}

} // namespace

void readChannels(const Context& context) {
    if (context.area == nullptr) return;
    resetChannels(*context.area);
    const std::unique_ptr<platform::XmlReader> reader = openConfigDocument(context, u"channels.xml", u"channels");
    if (reader == nullptr) return;
    platform::XmlElement element;
    while (reader->next(element))
        if (equalsIgnoringCase(element.name, u"channel")) applyChannel(*context.area, element);
}

} // namespace tallowmere

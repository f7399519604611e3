#include "tools/calibration/check_config.hpp"

#include "core/channels/catalogue.hpp"
#include "core/config/config_document.hpp"
#include "core/config/precision_rule.hpp"
#include "tools/calibration/item_text.hpp"
#include "tools/calibration/xml_check.hpp"
#include "units/unit_names.hpp"

#include <array>

namespace tallowmere::tools {
namespace {

constexpr std::size_t kLongestLongName = 31;
constexpr std::size_t kLongestShortName = 15;
constexpr std::int32_t kLargestClass = static_cast<std::int32_t>(UnitClass::FluidPressure);

class ChannelChecker {
  public:
    ChannelChecker() {
        for (std::size_t channel = 0; channel < kChannelCount; ++channel)
            classes_[channel] = kCatalogue[channel].unitClass();
    }

    void element(const platform::XmlElement& element, const ElementReport& report) {
        channel_ = 0;
        hasId_ = false;
        for (const platform::XmlAttribute& attribute : element.attributes) {
            if (attribute.value.empty())
                report.add(inQuotes(attribute.name) + " is empty", "it is ignored");
            else
                this->attribute(attribute, report);
        }
        if (!hasId_) report.add("has no id", "the element changes nothing");
    }

  private:
    void attribute(const platform::XmlAttribute& attribute, const ElementReport& report) {
        const std::u16string_view name = attribute.name;
        const std::u16string_view value = attribute.value;
        const auto is = [&](std::u16string_view other) { return equalsIgnoringCase(name, other); };
        if (is(u"id")) return id(value, report);
        if (!is(u"log") && !is(u"damp") && !is(u"prec") && !is(u"type") && !is(u"user"))
            return report.add("unknown attribute " + inQuotes(name), "it is ignored");
        if (!hasId_) return report.add(inQuotes(name) + " stands before the id", "it is ignored");
        if (channel_ == 0) return;
        if (is(u"log")) log(value, report);
        if (is(u"damp")) damp(value, report);
        if (is(u"prec")) precision(value, report);
        if (is(u"type")) type(value, report);
        if (is(u"user")) user(value, report);
    }

    [[nodiscard]] std::string channelText() const {
        return "channel " + std::to_string(channel_) + " (" + inputName(static_cast<std::int32_t>(channel_)) + ")";
    }

    void id(std::u16string_view value, const ElementReport& report) {
        hasId_ = true;
        channel_ = 0;
        const std::int32_t number = report.integer("id", value);
        if (number < 1 || number >= static_cast<std::int32_t>(kChannelCount))
            return report.add("there are no settings of channel " + std::to_string(number) + ", only of 1 to 413",
                              "the element changes nothing");
        channel_ = static_cast<std::size_t>(number);
        std::size_t& before = lines_[channel_];
        if (before != 0)
            report.add(channelText() + " was there already on line " + std::to_string(before),
                       "what both give, this one decides");
        before = report.line;
    }

    static void log(std::u16string_view value, const ElementReport& report) {
        if (!equalsIgnoringCase(value, u"true") && !equalsIgnoringCase(value, u"false"))
            report.add("log " + inQuotes(value) + " is neither true nor false", "it counts as true");
    }

    void damp(std::u16string_view value, const ElementReport& report) const {
        if (kCatalogue[channel_].dampable == 0)
            return report.add(channelText() + " can't be damped", "damp is ignored");
        const std::int32_t number = report.integer("damp", value);
        if (number < 0 || number > 0xFFFF)
            report.add("damp " + std::to_string(number) + " is not 0 to 65535",
                       "it is taken as " + std::to_string(static_cast<std::uint32_t>(number) & 0xFFFFU));
    }

    void precision(std::u16string_view value, const ElementReport& report) const {
        const std::int32_t number = report.integer("prec", value);
        if (number < 0 || number > kLargestPrecision)
            return report.add("prec " + std::to_string(number) + " is not 0 to 254", "it is ignored");
        if (isAlternating(channel_))
            return report.add(channelText() + " is shown as what it stands for", "prec is ignored");
        // Channel 203 goes by the catalogue, whatever its type.
        const UnitClass unitClass =
            channel_ == kLastUserChannel ? kCatalogue[channel_].unitClass() : classes_[channel_];
        if (hasOwnFormat(unitClass))
            report.add(channelText() + " is a " + unitNameOf(unitClass).words + ", which has a format of its own",
                       "prec is ignored");
    }

    void type(std::u16string_view value, const ElementReport& report) {
        if (!isUserChannel(channel_))
            return report.add(channelText() + " is no user channel (172 to 203)", "type is ignored");
        const std::int32_t number = report.integer("type", value);
        const auto stored = static_cast<std::int16_t>(number);
        classes_[channel_] = static_cast<UnitClass>(stored);
        if (number < 0 || number > kLargestClass)
            report.add("type " + std::to_string(number) + " is no unit class (0 to 22)",
                       stored >= 0 && stored <= kLargestClass ? "it is taken as " + std::to_string(stored)
                                                              : "the channel is treated as a plain number");
        if (channel_ == kLastUserChannel) lastUserType(classes_[channel_], report);
    }

    /// Channel 203 takes from its type the kind of its records alone; all else, conversion too, is the catalogue's.
    void lastUserType(UnitClass unitClass, const ElementReport& report) const {
        const StorageKind kind = storageKindOf(unitClass);
        if (kind == StorageKind::Time)
            report.add(channelText() + " would keep a " + unitNameOf(unitClass).words + ", and can't convert one",
                       "every number written to it is stored as none");
        else if (kind == StorageKind::Double && unitClass > UnitClass::Plain &&
                 unitClass <= static_cast<UnitClass>(kLargestClass))
            report.add(channelText() + " stays a plain number", "type changes nothing");
    }

    void user(std::u16string_view value, const ElementReport& report) const {
        if (!isUserChannel(channel_))
            return report.add(channelText() + " is no user channel (172 to 203)", "user is ignored");
        if (value.size() > kLongestLongName)
            report.add("user " + inQuotes(value) + " has more than 31 characters",
                       "the long name is cut to " + inQuotes(value.substr(0, kLongestLongName)));
        if (value.size() > kLongestShortName)
            report.add("user " + inQuotes(value) + " has more than 15 characters",
                       "the short name is cut to " + inQuotes(value.substr(0, kLongestShortName)));
    }

    std::array<UnitClass, kChannelCount> classes_{}; // as the file has set them so far
    std::array<std::size_t, kChannelCount> lines_{}; // where each channel was given last
    std::size_t channel_ = 0;
    bool hasId_ = false;
};

} // namespace

void checkChannelsFile(const platform::Platform& platform, const std::u16string& path, Findings& findings) {
    ChannelChecker checker;
    checkXmlDocument(platform, path, u"channels", u"channel", findings,
                     [&](const auto& element, const auto& report) { checker.element(element, report); });
}

} // namespace tallowmere::tools

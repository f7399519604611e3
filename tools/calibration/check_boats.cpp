#include "tools/calibration/check_config.hpp"

#include "core/channels/shared_area.hpp"
#include "core/config/config_document.hpp"
#include "core/config/number_scanner.hpp"
#include "tools/calibration/strict_number.hpp"
#include "tools/calibration/xml_check.hpp"
#include "tools/commands/text.hpp"

#include <array>

namespace tallowmere::tools {
namespace {

constexpr std::size_t kLongestBoatName = 31;
constexpr std::size_t kMmsiDigits = 9;

/// Walks an element's attributes in their order, as the library does.
class BoatChecker {
  public:
    void element(const platform::XmlElement& element, const ElementReport& report) {
        boat_.reset();
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
        if (is(u"id"))
            id(value, report);
        else if (is(u"r") || is(u"g") || is(u"b"))
            colour(lowerCased(printable(name)), value, report);
        else if (!is(u"name") && !is(u"mmsi"))
            report.add("unknown attribute " + inQuotes(name), "it is ignored");
        else if (!hasId_)
            report.add(inQuotes(name) + " stands before the id", "it is ignored");
        else if (boat_)
            is(u"name") ? this->name(value, report) : mmsi(value, report);
    }

    void id(std::u16string_view value, const ElementReport& report) {
        hasId_ = true;
        boat_.reset();
        const std::int32_t number = report.integer("id", value);
        if (number < 0 || number >= static_cast<std::int32_t>(kBoatCount))
            return report.add("there is no boat " + std::to_string(number) + ", only 0 to 99",
                              "the element changes nothing");
        boat_ = static_cast<std::size_t>(number);
        std::size_t& before = lines_[*boat_];
        if (before != 0)
            report.add("boat " + std::to_string(number) + " was there already on line " + std::to_string(before),
                       "what both give, this one decides; the colour always");
        before = report.line;
    }

    static void name(std::u16string_view value, const ElementReport& report) {
        if (value.size() > kLongestBoatName)
            report.add("name " + inQuotes(value) + " has more than 31 characters",
                       "it is cut to " + inQuotes(value.substr(0, kLongestBoatName)));
    }

    static void mmsi(std::u16string_view value, const ElementReport& report) {
        if (value.size() == kMmsiDigits && isWholeNumber(value) && value.front() >= u'0') return;
        const auto read = leadingUnsigned(value);
        report.add("mmsi " + inQuotes(value) + " has not nine digits",
                   read ? "it is read as " + std::to_string(*read) : "it is ignored");
    }

    static void colour(const std::string& component, std::u16string_view value, const ElementReport& report) {
        const std::int32_t number = report.integer(component, value);
        if (number < 0 || number > 255)
            report.add("colour component " + component + " is " + std::to_string(number) + ", not 0 to 255",
                       "it is taken as " + std::to_string(static_cast<std::uint32_t>(number) & 0xFFU));
    }

    std::array<std::size_t, kBoatCount> lines_{}; // where each boat was given last
    std::optional<std::size_t> boat_;
    bool hasId_ = false;
};

} // namespace

void checkBoatsFile(const platform::Platform& platform, const std::u16string& path, Findings& findings) {
    BoatChecker checker;
    checkXmlDocument(platform, path, u"boats", u"boat", findings,
                     [&](const auto& element, const auto& report) { checker.element(element, report); });
}

} // namespace tallowmere::tools

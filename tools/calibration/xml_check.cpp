#include "tools/calibration/xml_check.hpp"

#include "core/config/config_document.hpp"
#include "core/config/number_scanner.hpp"
#include "tools/calibration/strict_number.hpp"
#include "tools/commands/text.hpp"

namespace tallowmere::tools {

std::int32_t ElementReport::integer(std::string_view attribute, std::u16string_view text) const {
    const std::int32_t number = leadingInteger(text);
    const auto scanned = NumberScanner<char16_t>(text).number();
    if (!isWholeNumber(text) || (scanned && scanned->asInt64() != number))
        add(std::string(attribute) + " " + inQuotes(text) + " is no whole number of 32 bits",
            "it is read as " + std::to_string(number));
    return number;
}

void checkXmlDocument(const platform::Platform& platform, const std::u16string& path, std::u16string_view root,
                      std::u16string_view elementName, Findings& findings,
                      const std::function<void(const platform::XmlElement&, const ElementReport&)>& handle) {
    if (!platform.exists(path)) return;
    const auto reader = platform.openXml(path);
    if (reader == nullptr) {
        findings.add(path, 0, "can't be opened for reading", "the file counts as missing");
        return;
    }
    const auto reportMalformed = [&](const char* effect) {
        if (reader->malformed()) findings.add(path, reader->line(), "is malformed here", effect);
    };
    platform::XmlElement element;
    if (!reader->next(element)) {
        if (reader->malformed()) return reportMalformed("nothing is read");
        return findings.add(path, reader->line(), "has no element", "nothing is read");
    }
    if (!equalsIgnoringCase(element.name, root))
        return findings.add(path, reader->line(), "its root is " + inQuotes(element.name) + ", not " + inQuotes(root),
                            "nothing is read");
    while (reader->next(element)) {
        const ElementReport report{path, reader->line(), findings};
        if (equalsIgnoringCase(element.name, elementName))
            handle(element, report);
        else
            report.add("unknown element " + inQuotes(element.name), "it is ignored");
    }
    reportMalformed("what stands before it is read, the rest is not");
}

} // namespace tallowmere::tools

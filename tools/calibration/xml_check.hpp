// What the checks of XML documents have in common.
#pragma once

#include "tools/calibration/findings.hpp"

#include "platform/platform.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tallowmere::tools {

/// One element of a document, and where to say what is wrong with it.
struct ElementReport {
    const std::u16string& path;
    std::size_t line;
    Findings& findings;

    void add(std::string what, std::string effect) const {
        findings.add(path, line, std::move(what), std::move(effect));
    }
    /// The integer that the library reads, with a problem when the text is more or less than one.
    [[nodiscard]] std::int32_t integer(std::string_view attribute, std::u16string_view text) const;
};

/// Reads a document with this root; hands each element of this name to `handle` and reports all others, and the
/// place where the document is malformed.
void checkXmlDocument(const platform::Platform& platform, const std::u16string& path, std::u16string_view root,
                      std::u16string_view elementName, Findings& findings,
                      const std::function<void(const platform::XmlElement&, const ElementReport&)>& handle);

} // namespace tallowmere::tools

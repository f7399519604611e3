#include "core/config/config_document.hpp"

#include "platform/letter_case.hpp"
#include "settings/data_folders.hpp"

#include <algorithm>

namespace tallowmere {

bool equalsIgnoringCase(std::u16string_view a, std::u16string_view b) noexcept {
    return std::ranges::equal(a, b, {}, platform::lowerCase<char16_t>, platform::lowerCase<char16_t>);
}

std::unique_ptr<platform::XmlReader> openConfigDocument(const Context& context, std::u16string_view fileName,
                                                        std::u16string_view root) {
    std::unique_ptr<platform::XmlReader> reader = context.platform.openXml(dataFile(context, u"config", fileName));
    platform::XmlElement first;
    if (reader == nullptr || !reader->next(first) || !equalsIgnoringCase(first.name, root)) return nullptr;
    return reader;
}

} // namespace tallowmere

#include "core/config/config_document.hpp"

#include "settings/data_folders.hpp"

#include <algorithm>

namespace tallowmere {
namespace {

constexpr char16_t lowered(char16_t c) noexcept {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c - u'A' + u'a') : c;
}

} // namespace

bool equalsIgnoringCase(std::u16string_view a, std::u16string_view b) noexcept {
    return std::ranges::equal(a, b, {}, lowered, lowered);
}

std::unique_ptr<platform::XmlReader> openConfigDocument(const Context& context, std::u16string_view fileName,
                                                        std::u16string_view root) {
    std::unique_ptr<platform::XmlReader> reader = context.platform.openXml(dataFile(context, u"config", fileName));
    platform::XmlElement first;
    if (reader == nullptr || !reader->next(first) || !equalsIgnoringCase(first.name, root)) return nullptr;
    return reader;
}

} // namespace tallowmere

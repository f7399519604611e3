#include "tools/calibration/stored_value.hpp"

#include <array>
#include <bit>
#include <span>

namespace tallowmere::tools {
namespace {

using platform::SettingsType;

constexpr char kIgnored[] = "it is ignored";

std::string typeName(SettingsType type) {
    switch (type) {
    case SettingsType::String:
        return "a string (REG_SZ)";
    case SettingsType::ExpandString:
        return "a string with variables (REG_EXPAND_SZ)";
    case SettingsType::Binary:
        return "binary (REG_BINARY)";
    case SettingsType::Dword:
        return "a number (REG_DWORD)";
    case SettingsType::MultiString:
        return "a list of strings (REG_MULTI_SZ)";
    default:
        return "of type " + std::to_string(static_cast<std::uint32_t>(type));
    }
}

} // namespace

void StoredValues::report(const std::u16string& name, std::string what, std::string effect) {
    findings_.add(u"HKEY_CURRENT_USER\\" + key_ + u"\\" + name, 0, std::move(what), std::move(effect));
}

std::vector<std::u16string> StoredValues::names() const {
    return settings_ == nullptr ? std::vector<std::u16string>() : settings_->names();
}

std::optional<std::size_t> StoredValues::sizeOf(const std::u16string& name, SettingsType type) {
    if (settings_ == nullptr) return std::nullopt;
    const auto info = settings_->describe(name);
    if (!info) return std::nullopt;
    if (info->type == type) return info->size;
    report(name, "is " + typeName(info->type) + ", not " + typeName(type), kIgnored);
    return std::nullopt;
}

std::optional<std::u16string> StoredValues::text(const std::u16string& name) {
    const auto size = sizeOf(name, SettingsType::String);
    if (!size) return std::nullopt;
    if (*size % sizeof(char16_t) != 0) {
        report(name, "has " + std::to_string(*size) + " bytes, an odd number for a string", kIgnored);
        return std::nullopt;
    }
    std::u16string text(*size / sizeof(char16_t), u'\0');
    if (!settings_->read(name, std::as_writable_bytes(std::span(text)))) return std::nullopt;
    if (!text.empty() && text.back() == u'\0') text.pop_back();
    if (const std::size_t end = text.find(u'\0'); end != text.npos)
        report(name, "has a null character within", "the text ends there: " + inQuotes(text.substr(0, end)));
    return text;
}

std::optional<double> StoredValues::number(const std::u16string& name) {
    std::array<std::byte, sizeof(double)> bytes{};
    const auto size = sizeOf(name, SettingsType::Binary);
    if (!size) return std::nullopt;
    if (*size != bytes.size()) {
        report(name, "has " + std::to_string(*size) + " bytes, not the 8 of a double", kIgnored);
        return std::nullopt;
    }
    if (!settings_->read(name, bytes)) return std::nullopt;
    return std::bit_cast<double>(bytes);
}

std::optional<std::int32_t> StoredValues::integer(const std::u16string& name, bool wholeOnly) {
    std::array<std::byte, sizeof(std::int32_t)> bytes{};
    const auto size = sizeOf(name, SettingsType::Dword);
    if (!size) return std::nullopt;
    const bool ignored = *size > bytes.size() || (wholeOnly && *size != bytes.size());
    if (*size != bytes.size())
        report(name, "has " + std::to_string(*size) + " bytes, not the 4 of a number",
               ignored ? kIgnored : "it is extended with zeros");
    if (ignored || !settings_->read(name, bytes)) return std::nullopt;
    return std::bit_cast<std::int32_t>(bytes);
}

} // namespace tallowmere::tools

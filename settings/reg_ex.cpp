#include "settings/reg_ex.hpp"

#include <array>
#include <bit>
#include <span>

namespace tallowmere {
namespace {

using platform::SettingsInfo;
using platform::SettingsType;

} // namespace

std::optional<std::u16string> CRegEx::findString(const std::u16string& name) const {
    if (key_ == nullptr) return std::nullopt;
    const std::optional<SettingsInfo> info = key_->describe(name);
    if (!info || info->type != SettingsType::String) return std::nullopt;
    // An odd last byte leaves no room for it here, so that the read fails.
    std::u16string text(info->size / sizeof(char16_t), u'\0');
    if (!key_->read(name, std::as_writable_bytes(std::span(text)))) return std::nullopt;
    if (!text.empty() && text.back() == u'\0') text.pop_back();
    return text;
}

std::optional<std::int32_t> CRegEx::findDword(const std::u16string& name) const {
    if (key_ == nullptr) return std::nullopt;
    std::array<std::byte, sizeof(std::int32_t)> bytes{};
    const std::optional<SettingsInfo> info = key_->read(name, bytes);
    if (!info || info->type != SettingsType::Dword) return std::nullopt;
    return std::bit_cast<std::int32_t>(bytes);
}

std::optional<std::int32_t> CRegEx::findWholeDword(const std::u16string& name) const {
    if (key_ == nullptr) return std::nullopt;
    std::array<std::byte, sizeof(std::int32_t)> bytes{};
    const std::optional<SettingsInfo> info = key_->read(name, bytes);
    if (!info || info->type != SettingsType::Dword || info->size != bytes.size()) return std::nullopt;
    return std::bit_cast<std::int32_t>(bytes);
}

std::optional<double> CRegEx::findDouble(const std::u16string& name) const {
    if (key_ == nullptr) return std::nullopt;
    std::array<std::byte, sizeof(double)> bytes{};
    const std::optional<SettingsInfo> info = key_->read(name, bytes);
    if (!info || info->type != SettingsType::Binary || info->size != bytes.size()) return std::nullopt;
    return std::bit_cast<double>(bytes);
}

void CRegEx::writeString(const std::u16string& name, const std::u16string& text) {
    if (key_ != nullptr) key_->writeString(name, text);
}

void CRegEx::writeDword(const std::u16string& name, std::uint32_t value) {
    if (key_ != nullptr) key_->writeDword(name, value);
}

std::u16string indexedName(std::u16string_view prefix, std::size_t index) {
    const std::string digits = std::to_string(index);
    std::u16string name(prefix);
    name.append(digits.begin(), digits.end());
    return name;
}

} // namespace tallowmere

#include "platform/posix/registry_text.hpp"

#include "platform/letter_case.hpp"
#include "platform/posix/text.hpp"

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace tallowmere::platform::posix {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

void skipBlanks(std::string_view& text) noexcept {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
}

/// Takes a word off the front, which is given in lower case.
bool take(std::string_view& text, std::string_view word) noexcept {
    if (text.size() < word.size() || !std::ranges::equal(text.substr(0, word.size()), word, {}, lowerCase<char>))
        return false;
    text.remove_prefix(word.size());
    return true;
}

/// True when nothing but blanks or a comment is left.
bool isAtEnd(std::string_view text) noexcept {
    skipBlanks(text);
    return text.empty() || text.front() == ';';
}

/// Takes a quoted text, in which a backslash stands before a quote and before another backslash.
std::optional<std::string> takeQuoted(std::string_view& text) {
    if (!take(text, "\"")) return std::nullopt;
    std::string content;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '"') {
            text.remove_prefix(at + 1);
            return content;
        }
        const bool escapes = text[at] == '\\' && at + 1 < text.size() && (text[at + 1] == '\\' || text[at + 1] == '"');
        content += text[escapes ? ++at : at];
    }
    return std::nullopt;
}

/// Takes the name before the equals sign and that sign: empty for the default value.
std::optional<std::string> takeName(std::string_view& text) {
    skipBlanks(text);
    std::optional<std::string> name = take(text, "@") ? std::string() : takeQuoted(text);
    if (!name) return std::nullopt;
    skipBlanks(text);
    if (!take(text, "=")) return std::nullopt;
    skipBlanks(text);
    return name;
}

/// Takes a hexadecimal number of at most `maxDigits` digits.
std::optional<std::uint32_t> takeHex(std::string_view& text, std::size_t maxDigits) noexcept {
    std::uint32_t number = 0;
    const char* end = text.data() + std::min(text.size(), maxDigits);
    const auto [stop, error] = std::from_chars(text.data(), end, number, 16);
    if (error != std::errc()) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    return number;
}

/// Takes bytes parted by commas, with blanks and the backslashes of continued lines among them.
std::optional<std::vector<std::byte>> takeBytes(std::string_view text) {
    std::vector<std::byte> bytes;
    bytes.reserve(text.size() / 3 + 1); // two digits and a comma each
    const auto skipGap = [&] { text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n\\"), text.size())); };
    for (skipGap(); !isAtEnd(text); skipGap()) {
        const std::optional<std::uint32_t> byte = takeHex(text, 2);
        if (!byte) return std::nullopt;
        bytes.push_back(static_cast<std::byte>(*byte));
        skipGap();
        if (!take(text, ",") && !isAtEnd(text)) return std::nullopt;
    }
    return bytes;
}

std::vector<std::byte> bytesOf(std::u16string_view text) {
    std::vector<std::byte> bytes;
    bytes.reserve(text.size() * 2);
    for (const char16_t unit : text) {
        bytes.push_back(static_cast<std::byte>(unit & 0xFF));
        bytes.push_back(static_cast<std::byte>(unit >> 8));
    }
    return bytes;
}

/// A string is kept as text with its terminator.
std::vector<std::byte> stringBytes(std::string_view utf8) {
    return bytesOf(widenText(utf8) + u'\0');
}

std::vector<std::byte> dwordBytes(std::uint32_t value) {
    std::vector<std::byte> bytes;
    bytes.reserve(sizeof value);
    for (unsigned shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<std::byte>(value >> shift & 0xFF));
    return bytes;
}

/// Reads what follows the equals sign into the line. False when it is malformed.
bool readData(std::string_view data, RegistryValueLine& line) {
    const auto keep = [&](SettingsType type, std::optional<std::vector<std::byte>> bytes) {
        if (!bytes) return false;
        line.type = type;
        line.bytes = std::move(*bytes);
        return true;
    };
    if (take(data, "-")) return line.deletes = true, isAtEnd(data);
    if (take(data, "dword:")) {
        const std::optional<std::uint32_t> value = takeHex(data, 8);
        return value && isAtEnd(data) && keep(SettingsType::Dword, dwordBytes(*value));
    }
    if (take(data, "hex:")) return keep(SettingsType::Binary, takeBytes(data));
    if (take(data, "hex(")) {
        const std::optional<std::uint32_t> type = takeHex(data, 8);
        return type && take(data, "):") && keep(static_cast<SettingsType>(*type), takeBytes(data));
    }
    const std::optional<std::string> text = takeQuoted(data);
    return text && isAtEnd(data) && keep(SettingsType::String, stringBytes(*text));
}

/// Only byte lists are continued: a string may well end in a backslash.
bool isContinued(std::string_view line) {
    const std::size_t last = line.find_last_not_of(kBlanks);
    return last != line.npos && line[last] == '\\';
}
bool startsByteList(std::string_view line) {
    return takeName(line) && take(line, "hex");
}

std::size_t lineLength(std::string_view text) noexcept {
    const std::size_t end = text.find('\n');
    return end == text.npos ? text.size() : end + 1;
}

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') result += '\\';
        result += c;
    }
    return result += '"';
}

bool fitsOneLine(std::u16string_view text) noexcept {
    return text.find_first_of(std::u16string_view(u"\r\n\0", 3)) == text.npos && isWellFormed(text);
}

/// The name and the equals sign.
std::string writeName(std::u16string_view name) {
    if (!fitsOneLine(name)) return {};
    return (name.empty() ? "@" : quoted(narrowText(name))) + "=";
}

} // namespace

std::optional<std::string_view> RegistryLines::next() {
    if (rest_.empty()) return std::nullopt;
    std::size_t length = lineLength(rest_);
    if (isContinued(rest_.substr(0, length)) && startsByteList(rest_.substr(0, length))) {
        for (std::size_t start = 0; length < rest_.size() && isContinued(rest_.substr(start, length - start));) {
            start = length;
            length += lineLength(rest_.substr(start));
        }
    }
    const std::string_view line = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return line;
}

std::optional<RegistryKeyLine> readKeyLine(std::string_view line) {
    skipBlanks(line);
    const std::size_t end = line.rfind(']'); // the last one: key names may contain it
    if (end == line.npos) return std::nullopt;
    line = line.substr(0, end);
    if (!take(line, "[")) return std::nullopt;
    RegistryKeyLine key;
    key.deletes = take(line, "-");
    key.currentUser = take(line, "hkey_current_user") || take(line, "hkcu");
    key.currentUser = key.currentUser && (line.empty() || line.front() == '\\');
    key.path = foldPath(widenText(line));
    return key;
}

std::optional<RegistryValueLine> readValueLine(std::string_view line) {
    const std::optional<std::string> name = takeName(line);
    if (!name) return std::nullopt;
    RegistryValueLine value;
    value.name = foldName(widenText(*name));
    if (!readData(line, value)) return std::nullopt;
    return value;
}

std::u16string foldName(std::u16string_view name) {
    std::u16string folded(name);
    std::ranges::transform(folded, folded.begin(), lowerCase<char16_t>);
    return folded;
}

std::u16string foldPath(std::u16string_view path) {
    while (path.starts_with(u'\\')) path.remove_prefix(1);
    while (path.ends_with(u'\\')) path.remove_suffix(1);
    return foldName(path);
}

std::string writeKeyLine(std::u16string_view path) {
    if (!fitsOneLine(path)) return {};
    return "[HKEY_CURRENT_USER\\" + narrowText(path) + "]";
}

std::string writeStringLine(std::u16string_view name, std::u16string_view text) {
    const std::string start = writeName(name);
    if (start.empty() || fitsOneLine(text)) return start.empty() ? start : start + quoted(narrowText(text));
    std::string line = start + "hex(1):";
    for (const std::byte byte : bytesOf(std::u16string(text) + u'\0')) {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%02x,", std::to_integer<unsigned>(byte));
        line += digits;
    }
    line.pop_back();
    return line;
}

std::string writeDwordLine(std::u16string_view name, std::uint32_t value) {
    const std::string start = writeName(name);
    char data[16];
    std::snprintf(data, sizeof data, "dword:%08x", value);
    return start.empty() ? start : start + data;
}

std::string decodeRegistryFile(std::string bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) return bytes.erase(0, 3);
    const bool littleEndian = bytes.starts_with("\xFF\xFE");
    if (!littleEndian && !bytes.starts_with("\xFE\xFF")) return bytes;
    std::u16string text;
    text.reserve(bytes.size() / 2);
    for (std::size_t at = 2; at + 1 < bytes.size(); at += 2) {
        const auto low = static_cast<unsigned char>(bytes[littleEndian ? at : at + 1]);
        const auto high = static_cast<unsigned char>(bytes[littleEndian ? at + 1 : at]);
        text += static_cast<char16_t>(high << 8 | low);
    }
    return narrowText(text);
}

} // namespace tallowmere::platform::posix

#include "platform/windows/system.hpp"
#include "platform/windows/windows_platform.hpp"

#include <algorithm>
#include <array>
#include <limits>

namespace tallowmere::platform {
namespace {

constexpr UINT kGb18030 = 54936;
constexpr std::size_t kLongestCall = std::numeric_limits<int>::max();

constexpr bool isHighSurrogate(char16_t unit) noexcept {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool isLowSurrogate(char16_t unit) noexcept {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// True when the thread's code page has a form for every character. Asked to watch for missing ones, the
/// conversion into such a page fails.
bool threadPageIsUnicode() noexcept {
    CPINFOEXW page{};
    return ::GetCPInfoExW(CP_THREAD_ACP, 0, &page) != 0 && (page.CodePage == CP_UTF8 || page.CodePage == kGb18030);
}

/// The first character of a text that is not empty: one unit, or two that form a pair.
std::u16string_view firstCharacter(std::u16string_view text) noexcept {
    const bool pair = text.size() > 1 && isHighSurrogate(text[0]) && isLowSurrogate(text[1]);
    return text.substr(0, pair ? 2 : 1);
}

/// One character in the thread's code page. A look-alike is no form of it: '?' says that something is missing.
std::string narrowCharacter(std::u16string_view character, bool pageIsUnicode) {
    const bool lone = character.size() == 1 && (isHighSurrogate(character[0]) || isLowSurrogate(character[0]));
    if (lone) return "?";
    std::array<char, 8> bytes{};
    BOOL missing = FALSE;
    const int length = ::WideCharToMultiByte(
        CP_THREAD_ACP, pageIsUnicode ? 0 : WC_NO_BEST_FIT_CHARS, reinterpret_cast<const wchar_t*>(character.data()),
        static_cast<int>(character.size()), bytes.data(), static_cast<int>(bytes.size()), nullptr,
        pageIsUnicode ? nullptr : &missing);
    if (length <= 0 || missing) return "?";
    return {bytes.data(), static_cast<std::size_t>(length)};
}

} // namespace

// Character by character, so that none is cut in two, whatever the code page.
std::string WindowsPlatform::narrow(std::u16string_view text, std::size_t maxBytes) const {
    const bool pageIsUnicode = threadPageIsUnicode();
    std::string result;
    while (!text.empty()) {
        const std::u16string_view character = firstCharacter(text);
        const std::string bytes = narrowCharacter(character, pageIsUnicode);
        if (bytes.size() > maxBytes - result.size()) break;
        result += bytes;
        text.remove_prefix(character.size());
    }
    return result;
}

std::u16string WindowsPlatform::widen(std::string_view text) const {
    const auto bytes = static_cast<int>(std::min(text.size(), kLongestCall));
    const int length = ::MultiByteToWideChar(CP_THREAD_ACP, 0, text.data(), bytes, nullptr, 0);
    if (length <= 0) return {};
    std::u16string result(static_cast<std::size_t>(length), u'\0');
    ::MultiByteToWideChar(CP_THREAD_ACP, 0, text.data(), bytes, reinterpret_cast<wchar_t*>(result.data()), length);
    return result;
}

} // namespace tallowmere::platform

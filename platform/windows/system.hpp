// The one place that includes <windows.h>, and the two forms of UTF-16 text: the seam's char16_t and the
// system's wchar_t. Private to this folder.
#pragma once

#include <windows.h>

#include <string>

namespace tallowmere::platform {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

/// A text as the system takes it, up to its first NUL. Valid as long as the text is.
inline const wchar_t* wide(const std::u16string& text) noexcept {
    return reinterpret_cast<const wchar_t*>(text.c_str());
}

} // namespace tallowmere::platform

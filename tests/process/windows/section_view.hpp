// The shared section as a program sees it that only looks.
#pragma once

#include "core/channels/shared_area.hpp"

#include <windows.h>

#include <string>

namespace tallowmere::test {

inline constexpr wchar_t kSectionName[] = L"ZanCore_363_253336";

/// The section of living clients, mapped for reading (or writing, as a host does it). Throws when there is
/// none. It is one more holder of the section.
class SectionView {
  public:
    explicit SectionView(DWORD access = FILE_MAP_READ);
    ~SectionView();
    SectionView(const SectionView&) = delete;
    SectionView& operator=(const SectionView&) = delete;

    [[nodiscard]] const SharedArea& area() const { return *area_; }
    [[nodiscard]] SharedArea& writableArea() { return *area_; }

    [[nodiscard]] static bool sectionIsThere();

  private:
    HANDLE mapping_;
    SharedArea* area_ = nullptr;
};

/// A text field of the section up to its terminator, which must be there.
template <std::size_t Size> std::wstring textIn(const char16_t (&field)[Size]) {
    const std::u16string_view all(field, Size);
    const std::size_t end = all.find(u'\0');
    return end == all.npos ? L"(unterminated)" : std::wstring(field, field + end);
}

} // namespace tallowmere::test

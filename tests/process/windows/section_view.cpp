#include "tests/process/windows/section_view.hpp"

#include <stdexcept>

namespace tallowmere::test {

SectionView::SectionView(DWORD access) : mapping_(::OpenFileMappingW(access, FALSE, kSectionName)) {
    if (mapping_ == nullptr) throw std::runtime_error("there is no section");
    area_ = static_cast<SharedArea*>(::MapViewOfFile(mapping_, access, 0, 0, kSharedAreaBytes));
    if (area_ != nullptr) return;
    ::CloseHandle(mapping_);
    throw std::runtime_error("the section cannot be mapped");
}

SectionView::~SectionView() {
    ::UnmapViewOfFile(area_);
    ::CloseHandle(mapping_);
}

bool SectionView::sectionIsThere() {
    const HANDLE mapping = ::OpenFileMappingW(FILE_MAP_READ, FALSE, kSectionName);
    if (mapping != nullptr) ::CloseHandle(mapping);
    return mapping != nullptr;
}

} // namespace tallowmere::test

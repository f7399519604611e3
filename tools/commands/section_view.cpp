#include "tools/commands/section_view.hpp"

#include "core/ccore.hpp"

namespace tallowmere::tools {

SectionView::SectionView(platform::Platform& platform)
    : section_(platform.openSection(sectionName(), kSharedAreaBytes)),
      values_(Context{platform, section_ ? reinterpret_cast<SharedArea*>(section_->view()) : nullptr}) {}

std::u16string SectionView::maker() const {
    return section_ ? section_->maker() : std::u16string();
}

} // namespace tallowmere::tools

#include "view/section_reader.hpp"

#include "core/channels/attempt.hpp"
#include "core/channels/section_name.hpp"

namespace tallowmere {

SectionReader::SectionReader(platform::Platform& platform) noexcept : platform_(platform) {
    refreshNow();
}

tlm_view_attachment SectionReader::refresh() noexcept {
    const std::int64_t now = platform_.now();
    // A clock that was set back must not keep the answer for longer.
    const bool trusted = now >= asked_ && now < asked_ + kTrusted;
    return trusted ? state() : refreshNow();
}

tlm_view_attachment SectionReader::refreshNow() noexcept {
    asked_ = platform_.now();
    if (section_ && !section_->isOwned()) section_.reset();
    if (!section_) {
        attempt([&] { section_ = platform_.lookAtSection(sectionName(), kSharedAreaBytes); });
        if (section_) ++generation_;
    }
    return state();
}

tlm_view_attachment SectionReader::state() const noexcept {
    if (section_) return TLM_VIEW_ATTACHED;
    return generation_ == 0 ? TLM_VIEW_NO_SECTION : TLM_VIEW_WRITERS_GONE;
}

const SharedArea* SectionReader::area() const noexcept {
    return section_ ? reinterpret_cast<const SharedArea*>(section_->view()) : nullptr;
}

} // namespace tallowmere

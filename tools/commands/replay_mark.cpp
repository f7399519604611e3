#include "tools/commands/replay_mark.hpp"

#include "core/channels/attempt.hpp"
#include "core/channels/section_access.hpp"

#include <algorithm>

namespace tallowmere::tools {
namespace {

constexpr std::size_t kLongestName = sizeof(BoatEntry::name) / sizeof(char16_t) - 1;

} // namespace

ReplayMark::ReplayMark(SharedArea& area) : area_(area) {
    keep();
}

ReplayMark::~ReplayMark() {
    attempt([&] {
        if (!isReplay(&area_)) return;
        const bool untouched = readText(area_.boats[0].name) == marked_;
        writeText(area_.boats[0].name, untouched ? name_ : ownBoatName(area_));
    });
}

void ReplayMark::keep() {
    if (!marked_.empty() && isReplay(&area_)) return;
    name_ = ownBoatName(area_);
    marked_ = std::u16string(kReplaySign) + (name_.empty() ? u"" : u" ") + name_;
    marked_.resize(std::min(marked_.size(), kLongestName));
    writeText(area_.boats[0].name, marked_);
}

} // namespace tallowmere::tools

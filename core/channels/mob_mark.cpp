#include "core/channels/mob_mark.hpp"

#include "core/channels/section_access.hpp"

namespace tallowmere {

int raiseManOverboard(const Context& context, double latitude, double longitude) noexcept {
    if (context.area == nullptr) return 0;
    const std::uint64_t window = readOnce(context.area->hostWindow);
    if (window == 0) return 0;

    // The whole field is written, so nothing of an older, longer name is left behind the terminator.
    static constexpr char kName[sizeof(MobMark::name)] = "MOB";
    MobMark& mark = context.area->mob;
    for (std::size_t i = 0; i < sizeof kName; ++i) writeOnce(mark.name[i], kName[i]);
    writeOnce(mark.latitude, latitude);
    writeOnce(mark.longitude, longitude);
    writeOnce(mark.flagA, 1);
    writeOnce(mark.flagB, 1);
    return context.platform.postToHost(window, kMobMessage);
}

} // namespace tallowmere

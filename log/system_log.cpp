#include "log/system_log.hpp"

#include "core/channels/system_values.hpp"
#include "settings/data_folders.hpp"

#include <limits>

namespace tallowmere {
namespace {

constexpr std::int64_t kTicksPerMinute = 600'000'000;
constexpr std::size_t kBytesPerUnit = 4; // the most that one UTF-16 unit needs in a narrow character set

/// The file of the day: "log_system_15Nov2026.log" in the log folder, by the local date.
std::u16string logPath(const Context& context, std::int64_t now) {
    std::u16string format(1, context.platform.separator());
    format += u"log_system_%d%b%Y.log";
    return GetDataFolder(context, u"log_system") + FormatTime(ToLocalFileTime(context, now), format);
}

} // namespace

std::int64_t ToLocalFileTime(const Context& context, std::int64_t time) noexcept {
    if (SystemValues(context.area).flag(system_flag::kLocalTime) == 0) return time;
    const std::optional<platform::TimeZone> zone = context.platform.timeZone();
    if (!zone) return time;
    const std::int64_t minutes = std::int64_t{zone->bias} + (zone->daylight ? zone->daylightBias : 0);
    const std::int64_t ticks = minutes * kTicksPerMinute;
    using Limits = std::numeric_limits<std::int64_t>;
    const bool fits = ticks < 0 ? time <= Limits::max() + ticks : time >= Limits::min() + ticks;
    return fits ? time - ticks : time;
}

void WriteSystemLog(const Context& context, const std::u16string& message) {
    context.platform.showError(message);
    const std::int64_t now = context.platform.now();
    const std::u16string line = FormatTime(now, u"%H:%M:%S : ") + message;
    context.platform.appendLine(logPath(context, now), context.platform.narrow(line, line.size() * kBytesPerUnit));
}

} // namespace tallowmere

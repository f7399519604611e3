#include "tools/commands/watch_all.hpp"

#include "core/channels/value_reading.hpp"
#include "tools/commands/all_view.hpp"
#include "tools/commands/reading_table.hpp"
#include "tools/commands/watch_display.hpp"
#include "view/section_reader.hpp"

#include <optional>

namespace tallowmere::tools {
namespace {

constexpr unsigned kLookMilliseconds = 50; // between looks at the stamps
constexpr double kTicks = 1e7;             // a second

/// The looking itself: which section, whose writes.
class Lookout {
  public:
    Lookout(platform::Platform& platform) : section_(platform) {}

    void look(BoatIndex boat) {
        (void)section_.refresh();
        if (section_.generation() != generation_ || boat != boat_) monitor_.clear();
        generation_ = section_.generation();
        boat_ = boat;
        if (section_.area() != nullptr) monitor_.look(*section_.area(), boat, section_.now());
    }

    [[nodiscard]] AllRound round() const {
        const SharedArea* const area = section_.area();
        AllRound round{boatTitle(area, boat_), section_.now(), 0, area != nullptr, {}};
        if (area == nullptr) return round;
        round.boats = boatsInUse(*area);
        for (Reading& reading : readEverything(area, boat_, round.now)) {
            const WriteRate rate = monitor_.of(reading.source);
            round.rows.push_back({std::move(reading), rate});
        }
        return round;
    }

  private:
    SectionReader section_;
    WriteMonitor monitor_;
    std::uint32_t generation_ = 0;
    BoatIndex boat_ = 0;
};

/// Waits for a key or the time for the next look.
std::optional<platform::Key> waitForKey(const CommandContext& context, platform::Keyboard* keyboard) {
    if (keyboard != nullptr) return keyboard->next(kLookMilliseconds);
    context.platform.sleepMilliseconds(kLookMilliseconds);
    return std::nullopt;
}

} // namespace

int runWatchAll(const CommandContext& context, const WatchOptions& options) {
    const std::unique_ptr<platform::Keyboard> keyboard = context.keyboard();
    const SecondScreen second(context.out);
    Lookout lookout(context.platform);
    AllView view(options.boat);
    const auto interval = static_cast<std::int64_t>(options.intervalSeconds * kTicks);
    std::optional<std::int64_t> drawn;
    int rounds = 0;
    while (!context.stop) {
        lookout.look(view.boat());
        const std::int64_t now = context.platform.now();
        if (!drawn || now - *drawn >= interval || now < *drawn) {
            ScreenText screen(context.screenSize());
            view.draw(screen, lookout.round());
            context.out << screen.frame() << std::flush;
            drawn = now;
            if (!context.out || ++rounds == options.count) break;
        }
        if (const auto key = waitForKey(context, keyboard.get())) {
            if (!view.handle(*key)) break;
            drawn.reset(); // the answer to a key comes at once
        }
    }
    return exit_code::kDone;
}

} // namespace tallowmere::tools

#include "tools/record/play.hpp"

#include "core/ccore.hpp"
#include "core/channels/replay_sign.hpp"
#include "core/channels/section_name.hpp"
#include "tools/commands/replay_mark.hpp"
#include "tools/commands/screen_text.hpp"
#include "tools/record/damage_notes.hpp"
#include "tools/record/moment_text.hpp"
#include "tools/record/pace.hpp"
#include "tools/record/recording_reader.hpp"
#include "tools/record/replay_clock.hpp"
#include "tools/record/replayed_values.hpp"

#include <limits>
#include <map>
#include <memory>
#include <utility>

namespace tallowmere::recording {
namespace {

constexpr std::int64_t kTicksPerMillisecond = kTicksPerSecond / 1000;
constexpr std::int64_t kLongestPause = 5 * kTicksPerSecond; // that a busy machine makes of 50 ms

struct Range {
    Place from;
    std::optional<Place> to;
};

/// Plays files into one section.
class Player {
  public:
    Player(const tools::CommandContext& context, const PlayOptions& options, Range range, CCore& core)
        : context_(context), options_(options), range_(range), area_(*core.area()), mark_(area_),
          values_(core.values()), clock_(options.speed), damage_(context.err, "play"), told_(context.platform.now()),
          waited_(told_) {}
    ~Player() { values_.clear(); } // before the mark goes
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    /// False when the file can't be read, or not to its end.
    bool play(const std::string& file) {
        const OpenedReader opened = openRecording(context_.platform, file, context_.stop);
        if (!opened.reader) return complain(file, opened.error);
        started_.reset();
        reached_ = false;
        bool any = false; // was read
        while (!isOver()) {
            const auto item = opened.reader->next();
            if (!item) break;
            any = true;
            take(file, *item);
        }
        if (reached_ || options_.from.empty()) settle(); // beyond the end of the file nothing stands
        if (isOver() || opened.reader->error().empty()) return true;
        return complain(file, opened.reader->error() + (any ? "; the rest of it is missing" : ""));
    }

    /// Leaves what came last to be seen before it is taken out.
    void linger() {
        constexpr int pieces = 20; // of a second
        for (int piece = 0; played_ != 0 && piece < pieces && !isOver(); ++piece) {
            mark_.keep();
            pause(context_, 1000 / pieces);
        }
    }

    /// The user asked to end, or a host has come: live values and played ones would be mixed.
    [[nodiscard]] bool isOver() noexcept {
        if (!options_.force && readOnce(area_.hostWindow) != 0) yielded_ = true;
        return yielded_ || context_.stop;
    }
    /// It ended for a host.
    [[nodiscard]] bool yielded() const noexcept { return yielded_; }

    void tellCounts() {
        endProgress();
        context_.err << played_ << " values played";
        if (damage_.count() != 0) context_.err << ", " << damage_.count() << " damaged rows left out";
        if (homeless_ != 0) context_.err << ", " << homeless_ << " left out of channels that boats 2 to 99 don't keep";
        context_.err << '\n';
    }
    [[nodiscard]] std::uint64_t played() const noexcept { return played_; }
    /// A part was asked for in which nothing that was read has a value.
    [[nodiscard]] bool missedPart() const noexcept {
        const bool part = !options_.from.empty() || !options_.to.empty();
        return part && played_ == 0 && homeless_ == 0 && !yielded_ && !context_.stop;
    }

  private:
    bool complain(const std::string& file, const std::string& why) {
        endProgress();
        context_.err << "tallowmere play: " << printable(file) << ": " << why << '\n';
        return false;
    }

    void take(const std::string& file, const Item& item) {
        if (const auto* const session = std::get_if<Session>(&item)) return begin(session->started);
        if (const auto* const damage = std::get_if<Damage>(&item)) {
            endProgress();
            return damage_.add(file, *damage);
        }
        if (const auto* const value = std::get_if<Value>(&item)) takeValue(*value);
    }

    /// A session's values begin anew, at once: what lies between two sessions was not recorded.
    void begin(std::int64_t started) {
        before_.clear();
        if (!started_) started_ = started; // "+90" counts from the file's start
        start_ = std::max(started, range_.from.in(*started_));
        running_ = false;
    }

    void takeValue(const Value& value) {
        if (!started_) begin(value.time);
        reached_ = reached_ || value.time >= start_;
        if (range_.to && value.time > range_.to->in(*started_)) return;
        if (value.time < start_ && !running_) {
            before_[{value.boat, value.channel}] = value;
            return;
        }
        settle();
        clock_.meet(value.time, context_.platform.now());
        if (wait()) put(value);
    }

    /// What stood there when the part to be played begins, with its age.
    void settle() {
        if (running_ || !started_ || isOver()) return;
        running_ = true;
        waited_ = context_.platform.now();
        clock_.begin(start_, waited_);
        for (const auto& [place, value] : before_)
            if (!range_.to || start_ <= range_.to->in(*started_)) put(value);
        before_.clear();
    }

    /// Until the clock's position is due. False when it is over before.
    bool wait() {
        while (!isOver()) {
            mark_.keep(); // a gap in the recording may be long, and its values stand all the while
            const std::int64_t now = context_.platform.now();
            // The clock was set, or the machine slept: go on from here, neither waiting nor catching up.
            if (now < waited_ || now - waited_ > kLongestPause) clock_.begin(clock_.position(), now);
            waited_ = now;
            tellProgress(now);
            const std::int64_t left = clock_.due(now) - now;
            if (left <= 0) return true;
            constexpr std::int64_t longest = 50 * kTicksPerMillisecond;
            pause(context_, (std::min(left, longest) + kTicksPerMillisecond - 1) / kTicksPerMillisecond);
        }
        return false;
    }

    void put(const Value& value) {
        const bool kept = values_.put(value, clock_.stamp(value.time, context_.platform.now()));
        ++(kept ? played_ : homeless_);
    }

    void tellProgress(std::int64_t now) {
        if (!options_.progress || (now >= told_ && now - told_ < kTicksPerSecond)) return;
        told_ = now;
        context_.err << tools::kEraseLine << "playing " << momentText(clock_.position()).substr(0, 19) << "Z, "
                     << played_ << " values" << std::flush;
        shown_ = true;
    }
    void endProgress() {
        if (std::exchange(shown_, false)) context_.err << tools::kEraseLine;
    }

    const tools::CommandContext& context_;
    const PlayOptions& options_;
    Range range_;
    SharedArea& area_;
    tools::ReplayMark mark_;
    ReplayedValues values_;
    ReplayClock clock_;
    DamageNotes damage_;
    std::int64_t told_;
    std::int64_t waited_;                 // when the clock was last looked at
    std::optional<std::int64_t> started_; // of the file
    std::int64_t start_ = 0;              // of the session's part that is played
    bool reached_ = false;                // the file has values at that start or after it
    bool running_ = false;                // beyond that start
    std::map<std::pair<BoatIndex, ChannelIndex>, Value> before_;
    std::uint64_t played_ = 0;
    std::uint64_t homeless_ = 0;
    bool shown_ = false;
    bool yielded_ = false;
};

std::optional<Range> rangeOf(const tools::CommandContext& context, const PlayOptions& options) {
    Range range{Place{}, std::nullopt};
    for (const std::string* const text : {&options.from, &options.to}) {
        if (text->empty()) continue;
        const auto place = parsePlace(*text);
        if (!place) {
            context.err
                << "tallowmere play: \"" << printable(*text)
                << "\" is no place in a recording; write 2025-11-21T12:34:56Z, or +90 for 90 s after its start\n";
            return std::nullopt;
        }
        if (text == &options.from)
            range.from = *place;
        else
            range.to = place;
    }
    return range;
}

bool mayPlay(const tools::CommandContext& context, const CCore& core, bool force) {
    if (force || readOnce(core.area()->hostWindow) == 0) return true;
    context.err << "tallowmere play: a host has taken the shared data: live values and played ones would be mixed. "
                   "End it first; --force plays all the same\n";
    return false;
}

using Turn = std::unique_ptr<platform::SharedSection>;

/// There is one sign for all that is played, and it goes with the player that ends first: so one plays at a time. Its
/// turn is a name in the system that is free again when its process has ended, however that was. Null, with the exit
/// code, when it is another's.
Turn takeTurn(const tools::CommandContext& context, int& exitCode) {
    Turn turn = context.platform.openOrCreateSection(sectionName() + u"_player", 1);
    if (turn && !turn->existed()) return turn;
    exitCode = turn ? tools::exit_code::kNotFound : tools::exit_code::kSystem;
    context.err << (turn ? "tallowmere play: another program is playing a recording, and the values of both would be "
                           "mixed. End it first\n"
                         : "tallowmere play: it can't be told whether another program is playing a recording\n");
    return nullptr;
}

} // namespace

int runPlay(const tools::CommandContext& context, const PlayOptions& options) {
    const auto range = rangeOf(context, options);
    if (!range) return tools::exit_code::kUsage;
    CCore core(context.platform, false); // no calibration: the values have been corrected
    if (core.area() == nullptr) {
        context.err << "tallowmere play: the shared data can be neither made nor opened; see the message before this "
                       "one\n";
        return tools::exit_code::kSystem;
    }
    if (!mayPlay(context, core, options.force)) return tools::exit_code::kNotFound;
    int exitCode = tools::exit_code::kDone;
    const Turn turn = takeTurn(context, exitCode);
    if (!turn) return exitCode;
    if (endReplay(core.values()))
        context.err << "tallowmere play: a recording was played here (REPLAY); its values have been taken out\n";
    bool whole = true;
    Player player(context, options, *range, core);
    for (std::uint64_t before = 0; !player.isOver(); before = player.played()) {
        for (const std::string& file : options.files)
            if (!player.isOver()) whole = player.play(file) && whole;
        // A round that played nothing would only be repeated for ever.
        if (!options.loop || player.played() == before) break;
    }
    player.linger();
    player.tellCounts();
    if (player.yielded()) {
        context.err << "tallowmere play: a host has taken the shared data; the replay gives way to live values\n";
        return tools::exit_code::kNotFound;
    }
    if (whole && player.missedPart()) { // of files that were not read whole nobody knows
        context.err << "tallowmere play: no values lie between --from and --to: --from is after the end or after --to, "
                       "or --to before the start\n";
        return tools::exit_code::kNotFound;
    }
    return whole ? tools::exit_code::kDone : tools::exit_code::kNotFound;
}

} // namespace tallowmere::recording

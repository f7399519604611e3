// The functions of tallowmere_view on whatever stands under the section's name: sections of any bytes, which change
// between any two loads of a call, and files of other sizes and kinds, held by nobody or by their maker, open to
// others, replaced, cut. Nothing can be written there by a view, so it is the answers that count: each is held
// against the section's bytes as they lie, where these stand still.
#include "fuzz/support/input.hpp"
#include "fuzz/support/intruder.hpp"
#include "fuzz/support/load_watch.hpp"
#include "fuzz/support/places.hpp"
#include "fuzz/support/posix_section_file.hpp"
#include "fuzz/support/section_fill.hpp"
#include "fuzz/support/watched_section.hpp"

#include <tallowmere/view.h>

#include <bit>
#include <chrono>
#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tallowmere::fuzz {
namespace {

using test::kSectionBytes;

struct Close {
    void operator()(tlm_view* view) const noexcept { tlm_view_close(view); }
};
using View = std::unique_ptr<tlm_view, Close>;

template <std::size_t Size> void checkText(const char (&text)[Size]) {
    std::size_t length = 0;
    while (length < Size && text[length] != '\0') ++length;
    if (length == Size) fail("a text without an end");
    for (std::size_t i = length; i < Size; ++i)
        if (text[i] != '\0') fail("a text is not filled up with zeros", i);
    for (std::size_t i = 0; i < length; ++i)
        if (static_cast<unsigned char>(text[i]) < 0x20 || text[i] == 0x7F) fail("a control character", i);
}

bool sameBits(double a, double b) noexcept {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) || (a != a && b != b);
}

/// The file with what it is filled with. What a run has written into it is undone before the next.
class Machine {
  public:
    SectionFile file;

    void start(Fill fill) {
        if (isFresh_ && fill == fill_) return undo();
        if (!isFresh_) file.replace(kSectionBytes);
        fillSection(file.bytes().data(), fill);
        kept_.assign(file.bytes().begin(), file.bytes().end());
        written_.clear();
        fill_ = fill;
        isFresh_ = true;
    }
    /// The file itself becomes another: not worth undoing.
    SectionFile& changed() noexcept {
        isFresh_ = false;
        return file;
    }
    void put(std::size_t offset, Bytes bytes) {
        const std::span<std::byte> section = file.bytes();
        if (offset >= section.size() || bytes.empty()) return;
        const std::size_t size = std::min(bytes.size(), section.size() - offset);
        std::memcpy(&section[offset], bytes.data(), size);
        written_.push_back({offset, size});
    }

  private:
    void undo() {
        for (const auto& [offset, size] : written_) std::memcpy(&file.bytes()[offset], &kept_[offset], size);
        written_.clear();
    }

    bool isFresh_ = false;
    Fill fill_ = Fill::Count;
    std::vector<std::byte> kept_;
    std::vector<WatchedSection::Stretch> written_;
};

class Run {
  public:
    Run(Machine& machine, Input& input)
        : machine_(machine), input_(input),
          intruder_(input, machine.file.bytes().data(),
                    [this](std::size_t offset, Bytes bytes) { machine_.put(offset, bytes); }) {}
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    void fillFromInput() {
        const Bytes pattern = input_.bytes(4096);
        if (pattern.empty()) return;
        for (std::size_t at = 0; at < kSectionBytes; at += pattern.size()) machine_.put(at, pattern);
    }
    void all() {
        open();
        constexpr int kMostCalls = 200;
        for (int call = 0; call < kMostCalls && !input_.atEnd(); ++call) one();
    }

  private:
    using Step = void (Run::*)();

    void one() {
        static constexpr std::array<Step, 32> kSteps{
            &Run::read,      &Run::readGroup, &Run::channel,    &Run::catalogue,  &Run::find,       &Run::source,
            &Run::boat,      &Run::findBoat,  &Run::system,     &Run::mark,       &Run::simple,     &Run::refresh,
            &Run::askNow,    &Run::patchNow,  &Run::patchLater, &Run::storm,      &Run::replace,    &Run::setEntry,
            &Run::setHold,   &Run::setMode,   &Run::cut,        &Run::open,       &Run::withoutOne, &Run::stampNow,
            &Run::read,      &Run::readGroup, &Run::channel,    &Run::patchLater, &Run::patchNow,   &Run::storm,
            &Run::readGroup, &Run::read};
        (this->*kSteps[input_.take<std::uint8_t>() % kSteps.size()])();
    }

    // --- what stands there

    void patchNow() { intruder_.writeNow(); }
    void patchLater() { intruder_.writeLater(); }
    void storm() { intruder_.storm(); }
    /// A value that is as old as the input says.
    void stampNow() {
        const auto found = valuePlace(input_.channel() % kChannels, input_.boat() % kBoats);
        if (!found) return;
        const std::int64_t stamp = tlm_view_now() - std::int64_t{input_.take<std::int16_t>()} * 1'000'000;
        machine_.put(found->stamp, {reinterpret_cast<const std::uint8_t*>(&stamp), sizeof stamp});
    }
    void replace() {
        static constexpr std::array<std::size_t, 8> kSizes{
            kSectionBytes, kSectionBytes, 0, 1, 4096, kSectionBytes - 1, kSectionBytes + 1, kSectionBytes + 4096};
        isCurrent_ = false; // the view keeps the one before
        machine_.changed().replace(kSizes[input_.take<std::uint8_t>() % kSizes.size()]);
        intruder_.lookAt(machine_.file.bytes().data());
    }
    void setEntry() {
        machine_.changed().setEntry(
            static_cast<Entry>(input_.take<std::uint8_t>() % static_cast<unsigned>(Entry::Count)));
    }
    void setHold() {
        machine_.changed().setHold(static_cast<Hold>(input_.take<std::uint8_t>() % static_cast<unsigned>(Hold::Count)));
    }
    void setMode() {
        static constexpr std::array<unsigned, 6> kModes{0600, 0700, 0640, 0604, 0666, 0602};
        machine_.changed().setMode(kModes[input_.take<std::uint8_t>() % kModes.size()]);
    }
    /// What is gone may not be read (docs/threading.md), so a view that has it mapped is asked at once: it lets go.
    void cut() {
        machine_.changed().cut(input_.take<std::uint32_t>() % kSectionBytes);
        askNow();
    }

    // --- the view's attachment

    void open() {
        isCurrent_ = false;
        generations_ = 0;
        view_.reset(tlm_view_open());
        if (view_ == nullptr) fail("no view");
        expectAttachment(machine_.file.fits(), tlm_view_state(view_.get()));
    }
    void askNow() {
        const bool expected = machine_.file.fits() || (isCurrent_ && machine_.file.isHeld());
        expectAttachment(expected, tlm_view_refresh_now(view_.get()));
    }
    void refresh() {
        const std::int32_t state = tlm_view_refresh(view_.get());
        if (state < TLM_VIEW_NO_SECTION || state > TLM_VIEW_WRITERS_GONE) fail("no attachment");
        noteAttachment();
    }
    void noteAttachment() {
        const std::uint32_t generations = tlm_view_generation(view_.get());
        if (generations != generations_) isCurrent_ = true;
        if (tlm_view_state(view_.get()) != TLM_VIEW_ATTACHED) isCurrent_ = false;
        generations_ = generations;
    }
    void expectAttachment(bool attached, std::int32_t state) {
        noteAttachment();
        const std::int32_t without = generations_ == 0 ? TLM_VIEW_NO_SECTION : TLM_VIEW_WRITERS_GONE;
        if (state != (attached ? std::int32_t{TLM_VIEW_ATTACHED} : without))
            fail("the wrong attachment", static_cast<std::size_t>(state));
        if (state != tlm_view_state(view_.get())) fail("two answers about the attachment");
    }
    /// True when the call to come sees the file's bytes and nothing changes them.
    [[nodiscard]] bool isStill() const noexcept { return isCurrent_ && intruder_.isQuiet(); }
    [[nodiscard]] bool isAttached() const noexcept { return tlm_view_state(view_.get()) == TLM_VIEW_ATTACHED; }

    template <class T> [[nodiscard]] T raw(std::size_t offset) const {
        T value;
        std::memcpy(&value, &machine_.file.bytes()[offset], sizeof value);
        return value;
    }
    /// Loads from the section, during the call, are told to the intruder.
    template <class Call> auto during(Call call) {
        const LoadWatch loads(lastMappedForReading(), kSectionBytes, [this](std::size_t offset, std::size_t size) {
            if (isCurrent_) intruder_.beforeLoad(offset, size);
        });
        return call();
    }

    // --- values

    void checkValue(const tlm_view_value& value, std::uint16_t channel) {
        if (value.channel != channel) fail("another channel", value.channel);
        const bool hasSource = value.source < kChannels;
        if (!hasSource && value.source != TLM_VIEW_NO_CHANNEL) fail("a source is no channel", value.source);
        if (channel < 117 && value.source != channel) fail("another channel was read", value.source);
        if (value.reserved[0] != 0 || value.reserved[1] != 0) fail("a reserved byte is set");
        if (!(value.age_seconds >= 0) && value.age_seconds != TLM_VIEW_NO_AGE) fail("no age");
        const bool none = value.state == TLM_VIEW_NONE;
        if (none != (value.value == TLM_VIEW_NO_VALUE)) fail("state and value disagree", value.state);
        if (none) {
            if (value.age_seconds != TLM_VIEW_NO_AGE) fail("no value has an age");
            return;
        }
        if (!hasSource) fail("a value without a source");
        const int timeout = kRows[value.source].timeout;
        const bool fresh = value.age_seconds >= 0 && value.age_seconds <= timeout;
        const int state = timeout == 0 ? TLM_VIEW_TIMELESS : fresh ? TLM_VIEW_FRESH : TLM_VIEW_STALE;
        if (value.state != state) fail("the wrong state", value.state);
    }
    /// The bytes behind a value, as they lie.
    void checkBytes(const tlm_view_value& value, std::uint16_t boat) {
        const auto place = valuePlace(value.source, boat);
        if (!place || boat >= boats()) {
            if (value.stamp != TLM_VIEW_NO_TIME || value.state != TLM_VIEW_NONE) fail("a value from nowhere");
            return;
        }
        if (value.stamp != raw<std::int64_t>(place->stamp)) fail("not the stamp", place->stamp);
        if (value.record_header != raw<std::uint64_t>(place->record)) fail("not the header", place->record);
        if (value.record_payload != raw<std::uint64_t>(place->record + 8)) fail("not the payload", place->record);
    }
    [[nodiscard]] std::size_t boats() const {
        return std::min<std::size_t>(raw<std::uint32_t>(place::kBoatCount), kBoats);
    }

    void read() {
        const std::uint16_t channel = input_.channel();
        const std::uint16_t boat = input_.boat();
        const bool still = isStill();
        tlm_view_value value;
        std::memset(&value, 0x55, sizeof value);
        const std::int32_t has = during([&] { return tlm_view_read(view_.get(), channel, boat, &value); });
        checkValue(value, channel);
        if (has != (value.state != TLM_VIEW_NONE ? 1 : 0)) fail("the wrong answer to a read");
        if (value.changed != 0) fail("a single value has changed");
        if (still) checkBytes(value, boat);
        if (!isAttached() && has != 0) fail("a value without a section");
    }
    void readGroup() {
        const std::uint16_t boat = input_.boat();
        std::vector<std::uint16_t> channels(input_.take<std::uint8_t>() % 33);
        for (std::uint16_t& channel : channels) channel = input_.channel();
        const bool still = isStill();
        std::vector<tlm_view_value> values(channels.size());
        tlm_view_group group;
        std::memset(&group, 0x55, sizeof group);
        const std::int32_t quiet = during([&] {
            return tlm_view_read_group(view_.get(), boat, channels.data(), static_cast<std::uint32_t>(channels.size()),
                                       values.data(), &group);
        });
        std::uint32_t there = 0;
        for (std::size_t i = 0; i < values.size(); ++i) {
            checkValue(values[i], channels[i]);
            if (still) checkBytes(values[i], boat);
            if (values[i].changed > (quiet != 0 ? 0 : 1)) fail("a value has changed in a quiet group");
            there += values[i].state != TLM_VIEW_NONE ? 1 : 0;
        }
        if (group.values != there || group.quiet != static_cast<std::uint32_t>(quiet)) fail("the wrong group");
        if (group.tries < 1 || group.tries > TLM_VIEW_GROUP_TRIES) fail("the wrong number of tries", group.tries);
        if (group.section_generation != generations_) fail("another section");
        if ((still && quiet != 1) || (!isAttached() && quiet != 0)) fail("a group's rest is wrong");
        if (group.oldest_stamp > group.newest_stamp) fail("the oldest is newer");
        (void)during([&] { return tlm_view_read_group(view_.get(), boat, nullptr, 0, nullptr, nullptr); });
    }

    // --- channels, boats

    void checkChannel(const tlm_view_channel& info, std::uint16_t channel, std::int32_t has) {
        checkText(info.short_name);
        checkText(info.long_name);
        checkText(info.unit);
        if (has != (channel < kChannels ? 1 : 0)) fail("the wrong answer about a channel", channel);
        if (info.channel != (has != 0 ? channel : TLM_VIEW_NO_CHANNEL)) fail("another channel", info.channel);
        if (has != 0 && info.timeout_seconds != kRows[channel].timeout) fail("another time-out", channel);
        if (info.storage_kind > 3 || info.log > 1 || info.written > 1 || info.blocked > 1) fail("no truth", channel);
    }
    void channel() {
        const std::uint16_t channel = input_.channel();
        const bool still = isStill();
        tlm_view_channel info;
        std::memset(&info, 0x55, sizeof info);
        const std::int32_t has = during([&] { return tlm_view_get_channel(view_.get(), channel, &info); });
        checkChannel(info, channel, has);
        if (!still || has == 0) return;
        if (info.precision != raw<std::uint16_t>(place::precision(channel))) fail("another precision", channel);
        if (info.written != (raw<std::uint8_t>(place::written(channel)) != 0)) fail("written is wrong", channel);
        if (info.blocked != (raw<std::uint8_t>(place::blocked(channel)) != 0)) fail("blocked is wrong", channel);
        if (info.short_name[0] != '\0' && tlm_view_find_channel(view_.get(), info.short_name) > channel)
            fail("a channel is not found by its name", channel);
    }
    void catalogue() {
        const std::uint16_t channel = input_.channel();
        tlm_view_channel info;
        std::memset(&info, 0x55, sizeof info);
        checkChannel(info, channel, tlm_view_get_catalogue(channel, &info));
    }
    void find() {
        const std::string name = takeName();
        const std::uint16_t found = during([&] { return tlm_view_find_channel(view_.get(), name.c_str()); });
        if (found >= kChannels && found != TLM_VIEW_NO_CHANNEL) fail("no channel", found);
    }
    void source() {
        const std::uint16_t channel = input_.channel();
        const bool still = isStill();
        const std::uint16_t found = during([&] { return tlm_view_source(view_.get(), channel); });
        if (found >= kChannels && found != TLM_VIEW_NO_CHANNEL) fail("no channel", found);
        const bool alternating = channel >= 117 && channel <= 126;
        if (alternating && still && !isInTable(found)) fail("a channel that stands for none", found);
        if (!alternating && found != (channel < kChannels ? channel : TLM_VIEW_NO_CHANNEL)) fail("no source", found);
    }
    /// An alternating channel stands for another by way of one row of the table or two, or for none.
    [[nodiscard]] bool isInTable(std::uint16_t found) const {
        if (found == TLM_VIEW_NO_CHANNEL) return true;
        for (std::size_t cell = 0; cell < 90; ++cell)
            if (raw<std::int32_t>(place::kAlternates + 4 * cell) == found) return true;
        return false;
    }
    void boat() {
        const std::uint16_t boat = input_.boat();
        const bool still = isStill();
        tlm_view_boat info;
        std::memset(&info, 0x55, sizeof info);
        const std::int32_t has = during([&] { return tlm_view_get_boat(view_.get(), boat, &info); });
        checkText(info.name);
        if (info.in_use > 1 || info.has_data > 1 || info.reserved != 0) fail("no truth", boat);
        if (has != (boat < kBoats && isAttached() ? 1 : 0)) fail("the wrong answer about a boat", boat);
        if (!still || has == 0) return;
        if (info.boat != boat || info.mmsi != raw<std::uint32_t>(place::mmsi(boat))) fail("another boat", boat);
        if (info.colour != raw<std::uint32_t>(place::colour(boat))) fail("another colour", boat);
        if (info.in_use != (boat < boats())) fail("in use is wrong", boat);
        if (info.name[0] == '\0') return;
        const std::int32_t found = tlm_view_find_boat(view_.get(), info.name);
        if (found < 0 || found > boat) fail("a boat is not found by its name", boat);
    }
    void findBoat() {
        const std::string name = takeName();
        const std::int32_t found = during([&] { return tlm_view_find_boat(view_.get(), name.c_str()); });
        if (found < -1 || found >= static_cast<std::int32_t>(kBoats)) fail("no boat");
    }
    std::string takeName() {
        const Bytes bytes = input_.bytes(input_.take<std::uint8_t>() % 100);
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    }

    // --- system values, the mark, the rest

    void system() {
        const std::uint16_t index = input_.take<std::uint8_t>();
        const bool still = isStill();
        const bool attached = isAttached();
        double variable = 1.5;
        std::int32_t integer = 77;
        std::uint8_t flag = 77;
        const auto ask = [&](auto function, auto& value) {
            return during([&] { return function(view_.get(), index, &value); }) != 0;
        };
        const bool hasVariable = ask(tlm_view_get_variable, variable);
        const bool stillThen = still && intruder_.isQuiet();
        const bool hasInteger = ask(tlm_view_get_integer, integer);
        const bool hasFlag = ask(tlm_view_get_flag, flag);
        if (hasVariable != (variable != TLM_VIEW_NO_VALUE)) fail("a variable's answer is wrong", index);
        if (hasInteger != (attached && index < 13) || hasFlag != (attached && index < 60))
            fail("a system value's answer is wrong", index);
        if (!stillThen) return;
        if (index < 80 && !sameBits(variable, raw<double>(place::variable(index)))) fail("another variable", index);
        if (index < 13 && integer != raw<std::int32_t>(place::integer(index))) fail("another integer", index);
        if (index < 60 && flag != raw<std::uint8_t>(place::flag(index))) fail("another flag", index);
    }
    void mark() {
        const bool still = isStill();
        tlm_view_mob mob;
        std::memset(&mob, 0x55, sizeof mob);
        const std::int32_t has = during([&] { return tlm_view_get_mob(view_.get(), &mob); });
        checkText(mob.name);
        if (has != (mob.latitude != TLM_VIEW_NO_VALUE && mob.longitude != TLM_VIEW_NO_VALUE ? 1 : 0))
            fail("the mark's answer is wrong");
        if (still && (!sameBits(mob.latitude, raw<double>(place::kMobLatitude)) ||
                      !sameBits(mob.longitude, raw<double>(place::kMobLongitude))))
            fail("another mark");
    }
    void simple() {
        const bool still = isStill();
        const std::uint16_t count = during([&] { return tlm_view_boat_count(view_.get()); });
        if (count > kBoats) fail("too many boats", count);
        const bool stillThen = still && intruder_.isQuiet();
        const std::uint64_t window = during([&] { return tlm_view_host_window(view_.get()); });
        if (still && count != boats()) fail("another number of boats", count);
        if (stillThen && window != raw<std::uint64_t>(place::kHostWindow)) fail("another window");
        const bool stillToTheEnd = stillThen && intruder_.isQuiet();
        const std::int32_t replay = during([&] { return tlm_view_is_replay(view_.get()); });
        if (replay < 0 || replay > (isAttached() ? 1 : 0)) fail("no truth about a replay");
        if (stillToTheEnd && (replay != 0) != saysReplay()) fail("a replay that is none, or none that is one");
        if (tlm_view_interface() != TLM_VIEW_INTERFACE) fail("another interface");
        checkClock();
    }
    /// The sign that a player leaves in the name of boat 0.
    [[nodiscard]] bool saysReplay() const {
        constexpr std::u16string_view kSign = u"[REPLAY]";
        return std::memcmp(&machine_.file.bytes()[place::boatName(0)], kSign.data(), 2 * kSign.size()) == 0;
    }
    [[nodiscard]] static std::int64_t clockTicks() {
        using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
        constexpr std::int64_t kTicksTo1970 = 116'444'736'000'000'000;
        return kTicksTo1970 + std::chrono::floor<Ticks>(std::chrono::system_clock::now().time_since_epoch()).count();
    }
    /// A second to both sides: somebody may adjust the machine's clock.
    static void checkClock() {
        constexpr std::int64_t kSecond = 10'000'000;
        const std::int64_t before = clockTicks();
        const std::int64_t now = tlm_view_now();
        if (now < before - kSecond || now > clockTicks() + kSecond) fail("another clock");
    }
    /// No view at all: what needs none answers.
    void withoutOne() {
        View before = std::move(view_);
        const bool wasCurrent = std::exchange(isCurrent_, false);
        const std::uint32_t generations = std::exchange(generations_, 0);
        read();
        readGroup();
        channel();
        find();
        source();
        boat();
        findBoat();
        system();
        mark();
        simple();
        if (tlm_view_refresh(nullptr) != TLM_VIEW_NO_SECTION || tlm_view_refresh_now(nullptr) != TLM_VIEW_NO_SECTION)
            fail("no view has a section");
        (void)View(tlm_view_open()); // and a second one beside the first
        view_ = std::move(before);
        isCurrent_ = wasCurrent;
        generations_ = generations;
    }

    Machine& machine_;
    Input& input_;
    Intruder intruder_;
    View view_;
    bool isCurrent_ = false; // attached to the very file that the machine has now
    std::uint32_t generations_ = 0;
};

/// Somebody has to announce the loads of the library.
void checkAnnouncements(Machine& machine) {
    machine.start(Fill::Ones);
    const View view(tlm_view_open());
    std::size_t loads = 0;
    const LoadWatch watch(lastMappedForReading(), kSectionBytes, [&](std::size_t, std::size_t) { ++loads; });
    (void)tlm_view_boat_count(view.get());
    if (loads == 0) fail("nothing announces the loads of a view");
}

} // namespace

void view(Bytes bytes) {
    static Machine machine;
    static const bool checked = (checkAnnouncements(machine), true);
    (void)checked;
    Input input(bytes);
    const auto fill = static_cast<Fill>(input.take<std::uint8_t>() % static_cast<unsigned>(Fill::Count));
    machine.start(fill);
    Run run(machine, input);
    if (fill == Fill::Input) run.fillFromInput();
    run.all();
}

} // namespace tallowmere::fuzz

// Every call on a section whose bytes are anything, put there before a call and between any two loads that a call
// makes. Each call may write to the places that the documents name for it and to no other byte, and what the eleven
// functions answer is held against what their header says of any section; where nothing changes meanwhile, against the
// bytes as they lie.
#include "core/channels/area_defaults.hpp"
#include "core/config/alternate_table.hpp"
#include "core/config/boats_file.hpp"
#include "core/config/channels_file.hpp"
#include "fuzz/support/exports_core.hpp"
#include "fuzz/support/fuzz_platform.hpp"
#include "fuzz/support/input.hpp"
#include "fuzz/support/intruder.hpp"
#include "fuzz/support/load_watch.hpp"
#include "fuzz/support/places.hpp"
#include "fuzz/support/section_fill.hpp"
#include "fuzz/support/watched_section.hpp"
#include "log/system_log.hpp"
#include "settings/core_settings.hpp"
#include "settings/data_folders.hpp"
#include "settings/reg_ex.hpp"
#include "units/convert.hpp"

#include <tallowmere/tallowmere.h>

#include <algorithm>
#include <bit>
#include <memory>

namespace tallowmere::fuzz {
namespace {

/// What stands in a caller's variable before a call.
constexpr double kUntouched = -987.25;

bool sameBits(double a, double b) noexcept {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

/// One section with what it is filled with at the start of each run, and the core objects that work on it.
class Machine {
  public:
    explicit Machine(Fill fill) {
        platform.section = watched.bytes();
        fillSection(watched.bytes(), fill);
        if (fill == Fill::Defaults) platform.sectionExists = false;
        std::size_t loads = 0;
        {
            const LoadWatch watch(watched.bytes(), test::kSectionBytes, [&](std::size_t, std::size_t) { ++loads; });
            client = std::make_unique<CCore>(platform, false);
        }
        if (loads == 0) fail("nothing announces the loads of a start");
        platform.sectionExists = true;
        if (fill == Fill::Defaults) startHost();
        host = std::make_unique<CCore>(platform, true);
        watched.keep();
    }

    FuzzPlatform platform;
    WatchedSection watched;
    std::unique_ptr<CCore> client; // as the shared library has one
    std::unique_ptr<CCore> host;   // with calibration

  private:
    /// A host with all items in use, whose files hold a small table.
    void startHost() {
        platform.filesExist = true;
        platform.file = "0 45 90 135 180\n5 1 .5 0 -1 2\n20 3 2 1 0 -3\n";
        platform::posix::RegistryValues values;
        for (std::size_t item = 0; item < 20; ++item)
            values[platform::posix::foldName(indexedName(u"CalUse_", item))] = {
                platform::SettingsType::Dword, {std::byte{1}, std::byte{0}, std::byte{0}, std::byte{0}}};
        platform.settings[platform::posix::foldPath(kCalibrationKey)] = values;
    }
};

class Run {
  public:
    Run(Machine& machine, Input& input)
        : machine_(machine), watched_(machine.watched), input_(input),
          intruder_(input, watched_.bytes(), [this](std::size_t offset, Bytes bytes) { put(offset, bytes); }),
          loads_(watched_.bytes(), test::kSectionBytes,
                 [this](std::size_t offset, std::size_t size) { intruder_.beforeLoad(offset, size); }) {}
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    void fillFromInput() {
        const Bytes pattern = input_.bytes(4096);
        if (pattern.empty()) return;
        for (std::size_t at = 0; at < test::kSectionBytes; at += pattern.size()) watched_.put(at, pattern);
    }

    void all() {
        constexpr int kMostCalls = 400;
        for (int call = 0; call < kMostCalls && !input_.atEnd(); ++call) one();
        allowClockNow();
        watched_.check("a call wrote elsewhere");
    }

  private:
    using Step = void (Run::*)();

    void one() {
        static constexpr std::array<Step, 24> kSteps{
            &Run::setVar,     &Run::setVar2,     &Run::getVar,     &Run::getVar2,   &Run::names,    &Run::manOverboard,
            &Run::readSystem, &Run::setSystem,   &Run::resolve,    &Run::processed, &Run::convert,  &Run::hostStore,
            &Run::attach,     &Run::secondStage, &Run::paths,      &Run::readFiles, &Run::patchNow, &Run::patchLater,
            &Run::setVar,     &Run::hostStore,   &Run::patchLater, &Run::patchNow,  &Run::passTime, &Run::storm};
        (this->*kSteps[input_.take<std::uint8_t>() % kSteps.size()])();
        counts();
    }

    // --- other processes

    void patchNow() { intruder_.writeNow(); }
    void patchLater() { intruder_.writeLater(); }
    void storm() { intruder_.storm(); }
    void put(std::size_t offset, Bytes bytes) {
        mostBoats_ = std::max(mostBoats_, boats());
        watched_.put(offset, bytes);
        mostBoats_ = std::max(mostBoats_, boats());
    }
    void passTime() { machine_.platform.time += input_.number() > 0 ? 10'000'000 : -1; }

    // --- where calls may write

    [[nodiscard]] std::size_t boats() const {
        std::uint32_t count;
        watched_.copyOut(place::kBoatCount, &count, sizeof count);
        return std::min<std::size_t>(count, kBoats);
    }
    /// Said once, at the end of the run: it is many places, and nearly every call writes them.
    void allowClock() {
        mostBoats_ = std::max(mostBoats_, boats());
        clockWritten_ = true;
    }
    void allowClockNow() {
        if (!clockWritten_) return;
        for (const std::size_t boat : {0u, 1u}) {
            watched_.allow(place::fullStamp(0, boat), 8);
            watched_.allow(place::fullValue(0, boat) + 8, 8);
            watched_.allow(place::fullSecond(0, boat) + 8, 8);
            watched_.allow(place::fullThird(0, boat) + 8, 8);
        }
        for (std::size_t boat = 2; boat < mostBoats_; ++boat) {
            watched_.allow(place::compactStamp(0, boat), 8);
            watched_.allow(place::compactValue(0, boat) + 8, 8);
            watched_.allow(place::compactThird(0, boat) + 8, 8);
        }
    }
    void allowValue(std::size_t channel, std::size_t boat) {
        const auto found = valuePlace(channel, boat);
        if (!found) return;
        watched_.allow(found->stamp, 8);
        watched_.allow(found->record, 16);
        watched_.allow(place::hasData(boat), 1);
        watched_.allow(place::kBoatCount, 4);
    }
    void allowStore(std::size_t channel, std::size_t boat) {
        allowClock();
        if (channel == 0 || channel >= kChannels || boat >= kBoats) return;
        allowValue(channel, boat);
        allowValue(derivedChannel(channel), boat);
        watched_.allow(place::written(channel), 1);
        watched_.allow(place::kFlagSomethingWritten, 1);
    }

    // --- the exported functions

    /// True when nothing changes during the next call.
    [[nodiscard]] bool isStill() const noexcept { return intruder_.isQuiet(); }
    template <class T> [[nodiscard]] T raw(std::size_t offset) const {
        T value;
        watched_.copyOut(offset, &value, sizeof value);
        return value;
    }
    [[nodiscard]] static bool isInRange(std::uint16_t channel, std::uint16_t boat) noexcept {
        return channel < kChannels && boat < kBoats;
    }

    /// The same whatever happens to the section: asked after each step, and so while it changes.
    static void counts() {
        if (GetBoatNum() != 100) fail("GetBoatNum");
        if (GetZanVarNum() != 414) fail("GetZanVarNum");
    }
    void checkStored(std::uint16_t channel, std::uint16_t boat, std::uint8_t answer) {
        if (channel == 0 || !isInRange(channel, boat)) {
            if (answer != static_cast<std::uint8_t>(channel + 255))
                fail("not the code of a write out of range", channel);
            return;
        }
        if (answer > 1) fail("no truth about a write", channel);
        if (answer != 0 && !valuePlace(channel, boat)) fail("a write without a place", channel);
    }
    void setVar() {
        const std::uint16_t channel = input_.channel();
        const std::uint16_t boat = input_.boat();
        checkStored(channel, boat, SetZanVar(channel, input_.number(), boat));
        allowStore(channel, boat);
    }
    void setVar2() {
        const std::uint16_t channel = input_.channel();
        const std::uint16_t boat = input_.boat();
        const auto record = input_.take<ChannelValue>();
        checkStored(channel, boat, SetZanVar2(channel, &record, boat));
        allowStore(channel, boat);
    }
    /// True when the source keeps values of the boat.
    bool checkSource(std::uint16_t channel, std::uint16_t boat, std::uint16_t source) {
        const bool alternating = channel >= 117 && channel <= 126;
        if (source >= kChannels && source != 32767) fail("a source is no channel", source);
        if (!alternating && source != (isInRange(channel, boat) ? channel : 32767))
            fail("another channel was read", source);
        return valuePlace(source, boat).has_value();
    }
    void getVar() {
        const std::uint16_t channel = input_.channel();
        const std::uint16_t boat = input_.boat();
        double value = kUntouched;
        std::uint16_t source = 0;
        const std::uint8_t holds = GetZanVar(channel, &value, boat, &source);
        const bool hasPlace = checkSource(channel, boat, source);
        if (holds > 1 || (holds != 0 && (!hasPlace || value == 32767.0))) fail("GetZanVar's answer", channel);
        if (!isInRange(channel, boat) && value != 32767.0) fail("a value from out of range", channel);
        if (isInRange(channel, boat) && holds == 0 && value != 32767.0 && !sameBits(value, kUntouched))
            fail("a value that is none", channel);
        if (isInRange(channel, boat) && !hasPlace && !sameBits(value, kUntouched))
            fail("a value from nowhere", channel);
    }
    /// No value of any kind that a channel has.
    [[nodiscard]] static bool isNone(const ChannelValue& record) noexcept {
        switch (record.kind) {
        case ZAN_KIND_DOUBLE:
            return record.payload.number == 32767.0;
        case ZAN_KIND_INTEGER:
            return record.payload.integer == 32767;
        default:
            return record.kind == ZAN_KIND_TIME && record.payload.ticks == INT64_MAX;
        }
    }
    void getVar2() {
        const std::uint16_t channel = input_.channel();
        const std::uint16_t boat = input_.boat();
        const bool still = isStill();
        ChannelValue record{};
        std::uint16_t source = 0;
        const std::uint8_t holds = GetZanVar2(channel, &record, boat, &source);
        const bool hasPlace = checkSource(channel, boat, source);
        if (holds > 1) fail("no truth about a record", channel);
        if (!isInRange(channel, boat) && record.kind != ZAN_KIND_DOUBLE) fail("a kind from out of range", channel);
        if (!hasPlace || (still && boat >= boats())) {
            if (holds != 0 || !isNone(record)) fail("a record from nowhere", channel);
        } else if (still) {
            const auto lies = raw<ChannelValue>(valuePlace(source, boat)->record);
            if (std::memcmp(&record, &lies, sizeof record) != 0) fail("another record", channel);
        }
    }
    void names() {
        const std::uint16_t channel = input_.channel();
        std::array<char, 16> name{};
        if (input_.take<std::uint8_t>() % 2 == 0) {
            name.fill('~');
            GetZanVarName(channel, name.data());
            GetZanVarName(channel, nullptr);
            checkName(channel, name);
            return;
        }
        const Bytes text = input_.bytes(name.size());
        std::copy(text.begin(), text.end(), name.begin());
        SetZanUserVarName(channel, nullptr);
        SetZanUserVarName(channel, name.data());
        const std::size_t user = channel < 172 ? channel + 172u : channel;
        if (user >= 172 && user <= 203) watched_.allow(place::longName(user), 96); // both names
    }
    static void checkName(std::uint16_t channel, const std::array<char, 16>& name) {
        const auto holds = [](char c) { return [c](char each) { return each == c; }; };
        if (channel >= kChannels) {
            if (!std::all_of(name.begin(), name.end(), holds('~'))) fail("a name of no channel", channel);
            return;
        }
        const auto* const end = std::find(name.begin(), name.end(), '\0');
        if (end == name.end()) fail("an unended name", channel);
        if (!std::all_of(end, name.end(), holds('\0'))) fail("a name is not filled up with zeros", channel);
    }
    void manOverboard() {
        const double latitude = input_.number();
        const double longitude = input_.number();
        const bool still = isStill();
        const bool hasWindow = raw<std::uint64_t>(place::kHostWindow) != 0;
        const int posted = SetMOB(latitude, longitude);
        if (posted != 0 && posted != machine_.platform.postResult) fail("SetMOB");
        if (still && (posted != 0) != hasWindow) fail("an alarm for another host");
        if (still && !hasWindow) return;
        watched_.allow(place::kMobName, 32);
        watched_.allow(place::kMobLatitude, 18); // longitude and flags too
        if (still && (!sameBits(raw<double>(place::kMobLatitude), latitude) ||
                      !sameBits(raw<double>(place::kMobLatitude + 8), longitude)))
            fail("another mark");
    }
    void readSystem() {
        const std::uint16_t index = input_.take<std::uint8_t>();
        const bool still = isStill();
        double value = kUntouched;
        std::uint8_t flag = 77;
        const std::uint8_t hasValue = GetSysVar(index, &value);
        const bool stillThen = still && isStill();
        const std::uint8_t hasFlag = GetSysBool(index, &flag);
        if (hasValue != (value != 32767.0 ? 1 : 0) || (index >= 80 && hasValue != 0)) fail("GetSysVar", index);
        if (hasFlag != (index < 60 ? 1 : 0) || (index >= 60 && flag != 77)) fail("GetSysBool", index);
        if (still && index < 80 && !sameBits(value, raw<double>(place::variable(index))))
            fail("another variable", index);
        if (stillThen && index < 60 && flag != raw<std::uint8_t>(place::flag(index))) fail("another flag", index);
        (void)machine_.client->system().integer(index);
        (void)machine_.client->system().inMode(index, 0);
    }

    // --- what hosts do

    void setSystem() {
        const std::uint8_t index = input_.take<std::uint8_t>() % 90;
        SystemValues system = machine_.client->system();
        (void)system.setVariable(index, input_.number());
        system.setFlag(index, input_.take<std::uint8_t>());
        system.setInteger(index, input_.take<std::int32_t>());
        if (index < 80) watched_.allow(place::variable(index), 8);
        if (index < 60) watched_.allow(place::flag(index), 1);
        if (index < 13) watched_.allow(place::integer(index), 4);
    }
    void resolve() {
        const std::uint16_t channel = input_.channel();
        const ChannelIndex found =
            resolveAlternating(machine_.client->values(), channel, input_.take<std::uint8_t>() % 2 != 0);
        if (found >= kChannels && found != 32767) fail("no channel", found);
    }
    void processed() {
        const std::uint16_t channel = input_.channel();
        (void)machine_.host->values().fetchProcessed(channel, input_.boat(), input_.take<std::uint8_t>() % 2 != 0);
    }
    void convert() {
        const std::uint16_t channel = input_.channel();
        const double value = input_.number();
        (void)ConvertForDisplay(machine_.client->values(), channel, value);
        (void)ConvertForDisplay(machine_.client->values(), channel, value, input_.number());
    }
    void hostStore() {
        const std::uint16_t channel = input_.channel();
        const std::uint16_t boat = input_.boat();
        (void)machine_.host->values().storeDouble(channel, input_.number(), boat);
        allowStore(channel, boat);
    }
    void attach() {
        const CCore another(machine_.platform, false);
        allowClock();
    }
    void secondStage() {
        if (started_) return; // slow
        started_ = true;
        const CCore another(machine_.platform, true);
        allowClock();
        for (const std::size_t channel : {4u, 5u, 6u, 10u, 11u, 12u, 32u, 277u, 278u, 370u})
            watched_.allow(place::blocked(channel), 1);
        for (const std::size_t channel : {1u, 2u, 3u, 4u, 5u, 6u, 10u, 13u, 15u, 16u, 18u, 19u, 20u, 24u})
            watched_.allow(place::calibrate(channel), 1);
        watched_.allow(place::kDataFolder, 520);
    }
    void paths() {
        const Context& context = machine_.client->context();
        (void)GetDatabasePath(context);
        (void)GetMarksPath(context);
        (void)GetDataFolder(context, {});
        WriteSystemLog(context, u"a message");
        watched_.allow(place::kDatabasePath, 1040); // and the data folder
    }
    /// As if the section were new: the readers reset what they fill.
    void readFiles() {
        if (filled_) return; // slow
        filled_ = true;
        const Context& context = machine_.client->context();
        readBoats(context, nullptr);
        readChannels(context);
        readAlternateTable(context);
        readCoreSettings(context);
        for (std::size_t boat = 0; boat < kBoats; ++boat) {
            watched_.allow(place::boatName(boat), 64);
            watched_.allow(place::mmsi(boat), 8); // and the colour
        }
        for (std::size_t channel = 1; channel < kChannels; ++channel) {
            watched_.allow(place::log(channel), 1);
            watched_.allow(place::precision(channel), 4); // and the damping
        }
        watched_.allow(place::kAlternates, 360);
        watched_.allow(place::kMarksPath, 520);
        watched_.allow(place::kDatabasePath, 1040);
        watched_.allow(place::kVariables, 18 * 8);
        watched_.allow(place::kIntegers, 11 * 4);
        watched_.allow(place::kFlags, 34);
    }

    Machine& machine_;
    WatchedSection& watched_;
    Input& input_;
    std::size_t mostBoats_ = 0;
    bool clockWritten_ = false;
    bool started_ = false;
    bool filled_ = false;
    Intruder intruder_;
    LoadWatch loads_;
};

Machine& machineFor(Fill fill) {
    static std::array<std::unique_ptr<Machine>, static_cast<std::size_t>(Fill::Count)> machines;
    auto& machine = machines[static_cast<std::size_t>(fill)];
    if (machine == nullptr) machine = std::make_unique<Machine>(fill);
    return *machine;
}

} // namespace

void section(Bytes bytes) {
    Input input(bytes);
    const auto fill = static_cast<Fill>(input.take<std::uint8_t>() % static_cast<unsigned>(Fill::Count));
    Machine& machine = machineFor(fill);
    exportCore(*machine.client);
    Run run(machine, input);
    if (fill == Fill::Input) run.fillFromInput();
    run.all();
    machine.watched.rewind();
    machine.platform.time = 134'082'432'000'000'000;
}

} // namespace tallowmere::fuzz

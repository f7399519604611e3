// Every call on a section whose bytes are anything, put there before a call and between any two loads that a call
// makes. Each call may write to the places that the documents name for it and to no other byte.
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

#include <memory>

namespace tallowmere::fuzz {
namespace {

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

    void setVar() {
        const std::uint16_t channel = input_.channel();
        const std::uint16_t boat = input_.boat();
        (void)SetZanVar(channel, input_.number(), boat);
        allowStore(channel, boat);
    }
    void setVar2() {
        const std::uint16_t channel = input_.channel();
        const std::uint16_t boat = input_.boat();
        const auto record = input_.take<ChannelValue>();
        (void)SetZanVar2(channel, &record, boat);
        allowStore(channel, boat);
    }
    void checkSource(std::uint16_t channel, std::uint16_t source) {
        if (source >= kChannels && source != 32767) fail("a source is no channel", source);
        if (channel < 117 && source != channel && source != 32767) fail("another channel was read", source);
    }
    void getVar() {
        const std::uint16_t channel = input_.channel();
        double value = 0.0;
        std::uint16_t source = 0;
        (void)GetZanVar(channel, &value, input_.boat(), &source);
        checkSource(channel, source);
    }
    void getVar2() {
        const std::uint16_t channel = input_.channel();
        ChannelValue record{};
        std::uint16_t source = 0;
        (void)GetZanVar2(channel, &record, input_.boat(), &source);
        checkSource(channel, source);
    }
    void names() {
        const std::uint16_t channel = input_.channel();
        std::array<char, 16> name{};
        if (input_.take<std::uint8_t>() % 2 == 0) {
            GetZanVarName(channel, name.data());
            if (name.back() != '\0') fail("an unended name", channel);
            return;
        }
        const Bytes text = input_.bytes(name.size());
        std::copy(text.begin(), text.end(), name.begin());
        SetZanUserVarName(channel, name.data());
        const std::size_t user = channel < 172 ? channel + 172u : channel;
        if (user >= 172 && user <= 203) watched_.allow(place::longName(user), 96); // both names
    }
    void manOverboard() {
        const double latitude = input_.number();
        (void)SetMOB(latitude, input_.number());
        watched_.allow(place::kMobName, 32);
        watched_.allow(place::kMobLatitude, 18); // longitude and flags too
    }
    void readSystem() {
        const std::uint16_t index = input_.take<std::uint8_t>();
        double value = 0.0;
        std::uint8_t flag = 0;
        (void)GetSysVar(index, &value);
        (void)GetSysBool(index, &flag);
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

// Sequences of calls on a section that was just made, or on one of any bytes, against the model: every answer
// and all 253,336 bytes.
#include "core/config/alternate_table.hpp"
#include "fuzz/model/section_model.hpp"
#include "fuzz/support/exports_core.hpp"
#include "fuzz/support/fuzz_platform.hpp"
#include "fuzz/support/input.hpp"
#include "settings/reg_ex.hpp"

#include <tallowmere/tallowmere.h>

#include <bit>
#include <memory>
#include <random>
#include <vector>

namespace tallowmere::fuzz {
namespace {

constexpr std::int64_t kStart = 134'082'432'000'000'000; // 2025-11-22 00:00:00 UTC

bool sameBits(double a, double b) noexcept {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) || (a != a && b != b);
}

/// A client on its section, and the model beside it.
class Machine {
  public:
    explicit Machine(bool noise) {
        platform.section = watched.bytes();
        if (noise) {
            std::mt19937_64 random(363);
            for (std::size_t at = 0; at < test::kSectionBytes; at += 8) {
                const std::uint64_t word = random();
                std::memcpy(watched.bytes() + at, &word, 8);
            }
        }
        platform.sectionExists = noise;
        client = std::make_unique<CCore>(platform, false);
        platform.sectionExists = true;
        watched.keep();
        if (!noise) checkNew();
    }

    /// A section made anew by a process that finds these settings.
    void make(Input& input);

    FuzzPlatform platform;
    WatchedSection watched;
    SectionModel model{watched};
    std::unique_ptr<CCore> client;

  private:
    using Values = platform::posix::RegistryValues;

    /// Without settings or files.
    void checkNew() {
        model.now = platform.time;
        model.create();
        newSection_.assign(watched.expected(), watched.expected() + test::kSectionBytes);
        expectPaths({});
        model.stampTime();
        expectIntegers({});
        watched.check("a new section is not as documented");
    }
    Values takeSettings(Input& input);
    void expectPaths(const Values& values);
    void expectNumbers(const Values& values);
    void expectIntegers(const Values& values);
    static const platform::posix::RegistryValue* find(const Values& values, const std::u16string& name);

    std::vector<std::byte> newSection_; // as the model makes it
};

const platform::posix::RegistryValue* Machine::find(const Values& values, const std::u16string& name) {
    const auto found = values.find(platform::posix::foldName(name));
    return found == values.end() ? nullptr : &found->second;
}

/// Up to 24 values of any type and size; texts without a null character within.
Machine::Values Machine::takeSettings(Input& input) {
    Values values;
    const std::size_t count = input.take<std::uint8_t>() % 25;
    for (std::size_t at = 0; at < count && !input.atEnd(); ++at) {
        static constexpr const char16_t* kTexts[] = {u"DataFolder", u"Database2", u"MarksXml"};
        static constexpr const char16_t* kPrefixes[] = {u"Sys_v", u"Sys_b", u"Sys_i"};
        const std::uint8_t which = input.take<std::uint8_t>();
        const std::uint8_t shape = input.take<std::uint8_t>();
        platform::posix::RegistryValue value;
        value.type = static_cast<platform::SettingsType>(shape % 6);
        if (which < 30) {
            const std::size_t length = input.take<std::uint16_t>() % 300;
            const std::uint8_t first = input.take<std::uint8_t>();
            for (std::size_t unit = 0; unit < length; ++unit) {
                value.bytes.push_back(static_cast<std::byte>(1 + (first + unit * shape) % 255));
                value.bytes.push_back(std::byte{0});
            }
            if (shape % 2 == 1) value.bytes.insert(value.bytes.end(), 2, std::byte{0});
            if (shape >= 240) value.bytes.push_back(std::byte{1}); // half a character
            values[platform::posix::foldName(kTexts[which % 3])] = value;
            continue;
        }
        constexpr std::size_t kSizes[] = {8, 4, 8, 4, 2, 0, 12, 1};
        const std::size_t size = kSizes[shape / 6 % 8];
        for (std::size_t byte = 0; byte < size; ++byte) value.bytes.push_back(std::byte{input.take<std::uint8_t>()});
        values[platform::posix::foldName(indexedName(kPrefixes[which % 3], input.take<std::uint8_t>() % 40u))] = value;
    }
    return values;
}

void Machine::make(Input& input) {
    const Values values = takeSettings(input);
    platform.settings[platform::posix::foldPath(kCoreKey)] = values;
    std::memset(watched.bytes(), 0, test::kSectionBytes);
    platform.sectionExists = false;
    { const CCore maker(platform, false); }
    platform.sectionExists = true;
    platform.settings.clear();

    watched.expect(0, newSection_.data(), newSection_.size());
    expectPaths(values);
    expectNumbers(values);
    expectIntegers(values);
    model.stampTime();
    watched.check("a new section is not as its settings say");
}

/// The text of a plain string; `fallback` for anything else.
std::u16string textOf(const platform::posix::RegistryValue* value, const std::u16string& fallback) {
    if (value == nullptr || value->type != platform::SettingsType::String || value->bytes.size() % 2 != 0)
        return fallback;
    std::u16string text(value->bytes.size() / 2, u'\0');
    if (!text.empty()) std::memcpy(text.data(), value->bytes.data(), value->bytes.size());
    if (!text.empty() && text.back() == u'\0') text.pop_back();
    return text;
}

void Machine::expectPaths(const Values& values) {
    constexpr std::size_t kRoom = 260;
    model.setText(place::kDataFolder, kRoom, u"/data/Tallowmere");
    const std::u16string folder = textOf(find(values, u"DataFolder"), {});
    if (!folder.empty()) model.setText(place::kDataFolder, kRoom, folder);
    const std::u16string inUse = model.text(place::kDataFolder, kRoom);
    model.setText(place::kDatabasePath, kRoom, {});
    model.setText(place::kDatabasePath, kRoom, textOf(find(values, u"Database2"), inUse + u"/database/Tallowmere.db"));
    const std::u16string marks = textOf(find(values, u"MarksXml"), inUse + u"/marks.xml");
    if (!marks.empty()) model.setText(place::kMarksPath, kRoom, marks);
}

void Machine::expectNumbers(const Values& values) {
    for (std::size_t index = 0; index < 18; ++index) {
        const auto* value = find(values, indexedName(u"Sys_v", index));
        if (value == nullptr || value->type != platform::SettingsType::Binary || value->bytes.size() != 8) continue;
        double number;
        std::memcpy(&number, value->bytes.data(), 8);
        (void)model.setVariable(index, number);
    }
}

/// An integer of at most four bytes, a shorter one extended with zeros.
bool integerOf(const platform::posix::RegistryValue* value, std::int32_t& number) {
    if (value == nullptr || value->type != platform::SettingsType::Dword || value->bytes.size() > 4) return false;
    number = 0;
    if (!value->bytes.empty()) std::memcpy(&number, value->bytes.data(), value->bytes.size());
    return true;
}

void Machine::expectIntegers(const Values& values) {
    std::int32_t number = 0;
    for (std::size_t index = 0; index < 34; ++index)
        if (integerOf(find(values, indexedName(u"Sys_b", index)), number)) model.setFlag(index, number != 0 ? 1 : 0);
    for (const std::size_t index : {1u, 2u, 3u, 8u}) model.setInteger(index, 0);
    model.setInteger(4, 1);
    for (std::size_t index = 0; index < 11; ++index)
        if (integerOf(find(values, indexedName(u"Sys_i", index)), number)) model.setInteger(index, number);
}

class Run {
  public:
    Run(Machine& machine, Input& input) : model_(machine.model), machine_(machine), input_(input) {
        model_.now = machine_.platform.time = kStart;
    }

    void all() {
        constexpr int kMostCalls = 200;
        for (int call = 0; call < kMostCalls && !input_.atEnd(); ++call) one();
        machine_.watched.check("the section differs from the model's");
    }

  private:
    using Step = void (Run::*)();

    void one() {
        static constexpr std::array<Step, 16> kSteps{&Run::setVar,  &Run::setVar,  &Run::setVar2,   &Run::getVar,
                                                     &Run::getVar,  &Run::getVar2, &Run::setName,   &Run::getName,
                                                     &Run::system,  &Run::system,  &Run::setSystem, &Run::manOverboard,
                                                     &Run::resolve, &Run::host,    &Run::host,      &Run::passTime};
        (this->*kSteps[input_.take<std::uint8_t>() % kSteps.size()])();
        if (GetBoatNum() != 100) fail("GetBoatNum");
        if (GetZanVarNum() != 414) fail("GetZanVarNum");
    }

    void setVar() {
        const std::uint16_t channel = input_.channel();
        const std::uint16_t boat = input_.boat();
        const double value = input_.number();
        if (SetZanVar(channel, value, boat) != model_.setVar(channel, value, boat)) fail("SetZanVar", channel);
    }
    void setVar2() {
        const std::uint16_t channel = input_.channel();
        const std::uint16_t boat = input_.boat();
        const auto record = input_.take<ModelRecord>();
        ChannelValue given;
        std::memcpy(&given, &record, sizeof given);
        if (SetZanVar2(channel, &given, boat) != model_.setVar2(channel, record, boat)) fail("SetZanVar2", channel);
    }
    void getVar() {
        const std::uint16_t channel = input_.channel();
        const std::uint16_t boat = input_.boat();
        double value = -987.25;
        std::uint16_t source = 0;
        const bool holds = GetZanVar(channel, &value, boat, &source) != 0;
        const ModelReading expected = model_.getVar(channel, boat);
        if (holds != expected.holds || source != expected.source) fail("GetZanVar", channel);
        if (!sameBits(value, expected.touchesValue ? expected.value : -987.25)) fail("GetZanVar's value", channel);
    }
    void getVar2() {
        const std::uint16_t channel = input_.channel();
        const std::uint16_t boat = input_.boat();
        ChannelValue record{};
        std::uint16_t source = 0;
        const bool holds = GetZanVar2(channel, &record, boat, &source) != 0;
        ModelRecord expected;
        std::uint16_t expectedSource = 0;
        if (holds != model_.getVar2(channel, boat, expected, expectedSource) || source != expectedSource)
            fail("GetZanVar2", channel);
        ModelRecord found;
        std::memcpy(&found, &record, sizeof found);
        const bool sameKind = (found.header & 0xFF) == (expected.header & 0xFF);
        if (!sameKind || found.payload != expected.payload) fail("GetZanVar2's record", channel);
    }
    void setName() {
        const std::uint16_t channel = input_.channel();
        std::array<char, 20> name{};
        const Bytes text = input_.bytes(input_.take<std::uint8_t>() % 19);
        std::copy(text.begin(), text.end(), name.begin());
        SetZanUserVarName(channel, nullptr);
        SetZanUserVarName(channel, name.data());
        model_.setUserName(channel, std::string_view(name.data()));
    }
    void getName() {
        const std::uint16_t channel = input_.channel();
        std::array<char, 16> name;
        name.fill('~');
        GetZanVarName(channel, nullptr);
        GetZanVarName(channel, name.data());
        const std::string expected = model_.name(channel);
        const std::string_view untouched("~~~~~~~~~~~~~~~~");
        if (std::string_view(name.data(), 16) != (expected.empty() ? untouched : std::string_view(expected)))
            fail("GetZanVarName", channel);
    }
    void system() {
        const std::uint16_t index = input_.take<std::uint8_t>();
        double value = -1.0;
        double expected = -2.0;
        if ((GetSysVar(index, &value) != 0) != model_.sysVar(index, expected) || !sameBits(value, expected))
            fail("GetSysVar", index);
        std::uint8_t flag = 77;
        std::uint8_t expectedFlag = 77;
        if ((GetSysBool(index, &flag) != 0) != model_.sysBool(index, expectedFlag) || flag != expectedFlag)
            fail("GetSysBool", index);
    }
    void setSystem() {
        const std::uint8_t index = input_.take<std::uint8_t>() % 90;
        SystemValues system = machine_.client->system();
        const double number = input_.number();
        if (system.setVariable(index, number) != model_.setVariable(index, number)) fail("setting a variable", index);
        const auto flag = input_.take<std::uint8_t>();
        system.setFlag(index, flag);
        model_.setFlag(index, flag);
        const auto integer = input_.take<std::int32_t>();
        system.setInteger(index, integer);
        model_.setInteger(index, integer);
    }
    void manOverboard() {
        const double latitude = input_.number();
        const double longitude = input_.number();
        machine_.platform.postResult = model_.postResult = input_.take<std::uint8_t>() % 3;
        if (SetMOB(latitude, longitude) != model_.manOverboard(latitude, longitude)) fail("SetMOB");
    }
    void resolve() {
        const std::uint16_t channel = input_.channel();
        const bool mayRecurse = input_.take<std::uint8_t>() % 2 != 0;
        if (resolveAlternating(machine_.client->values(), channel, mayRecurse) != model_.resolve(channel, mayRecurse))
            fail("the choice of an alternating channel", channel);
    }

    /// What hosts and other clients write straight into the section.
    void host() {
        const std::size_t channel = input_.channel() % kChannels;
        const std::uint8_t what = input_.take<std::uint8_t>();
        switch (what % 10) {
        case 0:
            return put<std::uint8_t>(place::settings(channel) + what / 10 % 5u, what < 200 ? 1 : 0);
        case 1:
        case 2:
            return put<std::int16_t>(place::unitClass(channel),
                                     what < 240 ? static_cast<std::int16_t>(what / 10) : input_.take<std::int16_t>());
        case 3: {
            constexpr std::array<std::uint8_t, 7> kFlags{24, 27, 33, 36, 46, 52, 38};
            return put<std::uint8_t>(place::flag(kFlags[what / 10 % kFlags.size()]), input_.take<std::uint8_t>() % 2);
        }
        case 4:
            return put<std::int32_t>(place::integer(6), what < 200 ? 3 : 5);
        case 5:
        case 6:
            return put<std::int32_t>(place::kAlternates + 4 * (input_.take<std::uint8_t>() % 90u),
                                     what < 30 ? input_.take<std::int32_t>() : input_.channel());
        case 7:
            return put<std::uint32_t>(place::kBoatCount,
                                      what < 200 ? input_.take<std::uint8_t>() % 102u : input_.take<std::uint32_t>());
        case 8:
            return put<std::uint64_t>(place::kHostWindow, input_.take<std::uint8_t>());
        default:
            if (const auto found = valuePlace(channel, input_.boat()))
                put(what < 128 ? found->stamp : found->record + 8, input_.take<std::uint64_t>());
            return;
        }
    }
    template <class T> void put(std::size_t offset, T value) {
        std::array<std::uint8_t, sizeof(T)> bytes;
        std::memcpy(bytes.data(), &value, sizeof value);
        machine_.watched.put(offset, bytes);
    }

    void passTime() {
        const std::uint8_t how = input_.take<std::uint8_t>();
        std::int64_t& time = machine_.platform.time;
        time += how < 200 ? std::int64_t{how} * 1'700'000 : -std::int64_t{how} * 10'000'000;
        model_.now = time;
    }

    SectionModel& model_;
    Machine& machine_;
    Input& input_;
};

} // namespace

void model(Bytes bytes) {
    static Machine fresh(false);
    static Machine noise(true);
    Input input(bytes);
    const std::uint8_t which = input.take<std::uint8_t>();
    Machine& machine = which % 8 == 7 ? noise : fresh;
    exportCore(*machine.client);
    Run run(machine, input);
    if (which == 0) machine.make(input);
    run.all();
    machine.watched.rewind();
}

} // namespace tallowmere::fuzz

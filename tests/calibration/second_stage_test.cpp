// The second stage of the start-up, which a host's core object runs and the library's own does not.
#include "core/ccore.hpp"
#include "core/second_stage.hpp"
#include "settings/reg_ex.hpp"
#include "tests/calibration/calibration_fixture.hpp"
#include "tests/support/counted_memory.hpp"

#include <memory>
#include <set>
#include <string>

namespace tallowmere::test {
namespace {

namespace which = calibration_item;

class SecondStage : public ::testing::Test {
  protected:
    std::unique_ptr<CCore> host() { return std::make_unique<CCore>(platform, true); }
    std::unique_ptr<CCore> client() { return std::make_unique<CCore>(platform, false); }

    void setFlag(std::size_t index, std::uint32_t value = 1) {
        machine.addDword(kCoreKey, indexedName(u"Sys_b", index), value);
    }
    void addFile(const std::u16string& name, std::string text) {
        machine.addFile(u"C:\\ProgramData\\Tallowmere\\calibration\\ZAN_CAL_" + name + u".txt", std::move(text));
    }
    void useItem(std::size_t id) { machine.addDword(kCalibrationKey, indexedName(u"CalUse_", id), 1); }

    static std::set<std::size_t> blocked(const CCore& core) {
        std::set<std::size_t> found;
        for (std::size_t channel = 0; channel < kChannelCount; ++channel)
            if (core.area()->settings[channel].blocked != 0) found.insert(channel);
        return found;
    }
    static std::set<std::size_t> flagged(const CCore& core) {
        std::set<std::size_t> found;
        for (std::size_t channel = 0; channel < kChannelCount; ++channel)
            if (core.area()->settings[channel].calibrate != 0) found.insert(channel);
        return found;
    }
    [[nodiscard]] std::u16string location() const {
        const auto key = machine.settings.find(kCoreKey);
        if (key == machine.settings.end() || !key->second.contains(u"Location")) return u"absent";
        const MemoryValue& value = key->second.at(u"Location");
        EXPECT_EQ(value.type, platform::SettingsType::String);
        std::u16string text(value.bytes.size() / 2, u'\0');
        std::memcpy(text.data(), value.bytes.data(), value.bytes.size());
        EXPECT_EQ(text.back(), u'\0');
        text.pop_back();
        return text;
    }
    static double stored(CCore& core, ChannelIndex channel, double value) {
        EXPECT_TRUE(core.values().store(channel, Record::ofNumber(value), 0, kNoTime));
        return core.values().fetch(channel, 0).record.number();
    }

    MemoryMachine machine;
    MemoryPlatform platform{machine};
};

TEST_F(SecondStage, IsLeftOutWithoutTheStartFlag) {
    setFlag(26);
    useItem(which::kHdg);
    addFile(u"Hdg", "0 1 0 2\n");
    const auto core = client();
    EXPECT_TRUE(blocked(*core).empty());
    EXPECT_TRUE(flagged(*core).empty());
    EXPECT_EQ(location(), u"absent");
    for (const CalibrationItem& item : core->calibration().items()) {
        EXPECT_TRUE(item.table.rows.empty());
        EXPECT_TRUE(item.name.empty());
    }
    for (const std::u16string name : {u"calibration"})
        EXPECT_TRUE(machine.files.contains(u"C:\\ProgramData\\Tallowmere\\" + name)); // only the one added here
    EXPECT_EQ(stored(*core, ZAN_HDG, 100.0), 100.0);
}

TEST_F(SecondStage, WithoutItNoCalibrationFileIsAskedFor) {
    const auto core = client();
    EXPECT_EQ(std::count(machine.trace.begin(), machine.trace.end(), "OpenFile"), 1); // alternate.csv
    EXPECT_EQ(std::count(machine.trace.begin(), machine.trace.end(), "CreateSettings"), 0);
    EXPECT_FALSE(machine.files.contains(u"C:\\ProgramData\\Tallowmere\\calibration"));
}

// --- blocking

TEST_F(SecondStage, EachFlagBlocksItsChannels) {
    struct Row {
        std::size_t flag;
        std::set<std::size_t> channels;
    };
    const Row rows[] = {{22, {10}}, {23, {10}}, {24, {277, 278}}, {25, {11, 12}}, {26, {4, 5}}, {28, {6}}, {27, {32}},
                        {29, {}},   {30, {}},   {31, {}},         {32, {}},       {33, {}},     {8, {370}}};
    const auto keeper = client();
    for (const Row& row : rows) {
        std::fill_n(keeper->area()->systemFlags, kSystemFlagCount, std::uint8_t{0});
        for (ChannelSetting& setting : keeper->area()->settings) setting.blocked = 0;
        keeper->system().setFlag(row.flag, 1);
        const auto core = host();
        EXPECT_EQ(blocked(*core), row.channels) << row.flag;
    }
}

TEST_F(SecondStage, NoOtherFlagBlocks) {
    const std::set<std::size_t> blocking{22, 23, 24, 25, 26, 27, 28, 8};
    const auto keeper = client();
    for (std::size_t flag = 0; flag < kSystemFlagCount; ++flag)
        keeper->system().setFlag(flag, blocking.contains(flag) ? 0 : 1);
    EXPECT_TRUE(blocked(*host()).empty());
}

TEST_F(SecondStage, WithFlag26TheTrueWindIsBlockedAndItsWritesAreRefused) {
    setFlag(26);
    const auto core = host();
    EXPECT_EQ(blocked(*core), (std::set<std::size_t>{4, 5}));
    EXPECT_FALSE(core->values().store(ZAN_TWA, Record::ofNumber(30.0), 0, kNoTime));
    EXPECT_FALSE(core->values().store(ZAN_TWS, Record::ofNumber(30.0), 0, kNoTime));
    EXPECT_TRUE(core->values().store(ZAN_TWD, Record::ofNumber(30.0), 0, kNoTime));
}

TEST_F(SecondStage, ASecondHostWithTheFlagClearedUnblocksNothing) {
    setFlag(26);
    const auto first = host();
    first->system().setFlag(26, 0);
    const auto second = host();
    EXPECT_EQ(blocked(*second), (std::set<std::size_t>{4, 5}));
}

TEST_F(SecondStage, FlagsByteIsOredIntoTheBlockedByte) {
    const auto keeper = client();
    keeper->system().setFlag(28, 0x40);
    keeper->area()->settings[ZAN_TWD].blocked = 0x02;
    const auto core = host();
    EXPECT_EQ(core->area()->settings[ZAN_TWD].blocked, 0x42);
}

// --- calibration

TEST_F(SecondStage, WithoutSettingsAndFilesTheTablesAreEmptyAndLeewayIsFlagged) {
    const auto core = host();
    for (const CalibrationItem& item : core->calibration().items()) {
        EXPECT_TRUE(item.table.rows.empty());
        EXPECT_FALSE(item.name.empty());
    }
    EXPECT_EQ(flagged(*core), (std::set<std::size_t>{ZAN_LEEWAY}));
    EXPECT_EQ(stored(*core, ZAN_BSP, 6.0), 6.0);
    EXPECT_TRUE(machine.files.contains(u"C:\\ProgramData\\Tallowmere\\calibration"));
    EXPECT_FALSE(machine.settings.contains(kCalibrationKey));
}

TEST_F(SecondStage, ItemsInUseCorrectWhatTheHostWrites) {
    useItem(which::kHdg);
    useItem(which::kBsp);
    addFile(u"Hdg", "0\n0 3\n");
    addFile(u"Bsp", "0 5 10\n0 0.5 1 1.5\n");
    const auto core = host();
    EXPECT_EQ(flagged(*core), (std::set<std::size_t>{ZAN_BSP, ZAN_LEEWAY, ZAN_HDG}));
    EXPECT_EQ(stored(*core, ZAN_HDG, 359.0), 2.0);
    EXPECT_EQ(stored(*core, ZAN_BSP, 5.0), 6.0);
    for (const CalibrationItem& item : core->calibration().items())
        for (const CurveRow& row : item.table.rows) EXPECT_EQ(row.dirty, 0);
}

TEST_F(SecondStage, FilesComeFromTheSettingsPaths) {
    useItem(which::kHdg);
    machine.addString(kCalibrationKey, u"CalFile_8", u"D:\\my heading.txt");
    machine.addFile(u"D:\\my heading.txt", "0\n0 7\n");
    addFile(u"Hdg", "0\n0 3\n");
    const auto core = host();
    EXPECT_EQ(stored(*core, ZAN_HDG, 10.0), 17.0);
}

TEST_F(SecondStage, APlainClientBesideTheHostStoresAsWritten) {
    useItem(which::kHdg);
    addFile(u"Hdg", "0\n0 3\n");
    const auto core = host();
    const auto plain = client();
    EXPECT_EQ(stored(*core, ZAN_HDG, 100.0), 103.0);
    EXPECT_EQ(plain->values().fetch(ZAN_HDG, 0).record.number(), 103.0);
    EXPECT_EQ(stored(*plain, ZAN_HDG, 100.0), 100.0); // it has no table
    EXPECT_EQ(core->values().fetch(ZAN_HDG, 0).record.number(), 100.0);
    useItem(which::kBsp);
    addFile(u"Bsp", "0\n0 1\n");
    const auto second = host();
    EXPECT_EQ(stored(*plain, ZAN_BSP, -1.0), 0.0); // but brings flagged channels into range
}

TEST_F(SecondStage, AHostThatOpensReadsItsCalibrationToo) {
    const auto plain = client();
    useItem(which::kHdg);
    addFile(u"Hdg", "0\n0 3\n");
    const auto core = host();
    EXPECT_FALSE(core->madeSection());
    EXPECT_EQ(stored(*core, ZAN_HDG, 100.0), 103.0);
}

TEST_F(SecondStage, ItemsLiveAsLongAsTheHostAndTheFlagsAsTheSection) {
    useItem(which::kHdg);
    addFile(u"Hdg", "0\n0 3\n");
    const auto plain = client();
    host().reset();
    EXPECT_EQ(flagged(*plain), (std::set<std::size_t>{ZAN_LEEWAY, ZAN_HDG}));
    EXPECT_EQ(stored(*plain, ZAN_HDG, 100.0), 100.0);
}

// --- location

TEST_F(SecondStage, WritesTheHostsFolderWithItsSeparator) {
    const auto core = host();
    EXPECT_EQ(location(), u"C:\\Programs\\Nav\\");
}

TEST_F(SecondStage, LocationNamesTheLastHost) {
    machine.addString(kCoreKey, u"Location", u"C:\\Elsewhere\\");
    host().reset();
    machine.hostExecutable = u"D:\\Race\\race.exe";
    host().reset();
    EXPECT_EQ(location(), u"D:\\Race\\");
}

TEST_F(SecondStage, UnknownHostFolderWritesAnEmptyText) {
    machine.failAlways(Step::HostExecutable);
    const auto core = host();
    EXPECT_EQ(location(), u"");
}

TEST_F(SecondStage, FailureToOpenOrWriteTheKeyIsIgnored) {
    machine.failAlways(Step::CreateSettings);
    EXPECT_NE(host()->area(), nullptr);
    EXPECT_EQ(location(), u"absent");
}

// --- order and failures

TEST_F(SecondStage, StepsComeInOrder) {
    useItem(which::kHdg);
    machine.trace.clear();
    const auto core = host();
    const auto last = [&](const char* step) {
        return machine.trace.rend() - std::find(machine.trace.rbegin(), machine.trace.rend(), step);
    };
    EXPECT_LT(last("MakeDirectory"), last("OpenSettings")); // reset, then the calibration key
    EXPECT_LT(last("OpenSettings"), last("OpenFile"));
    EXPECT_LT(last("OpenFile"), last("CreateSettings"));
    EXPECT_LT(last("CreateSettings"), last("WriteValue"));
    EXPECT_EQ(std::count(machine.trace.begin(), machine.trace.end(), "OpenFile"), 21);
}

TEST_F(SecondStage, WithoutASectionItemsAndLocationAreDoneAndNothingIsBlocked) {
    machine.failAlways(Step::MapSection);
    machine.addString(kCalibrationKey, u"CalFile_8", u"D:\\hdg.txt");
    machine.addFile(u"D:\\hdg.txt", "0\n0 3\n");
    const auto core = host();
    EXPECT_EQ(core->area(), nullptr);
    EXPECT_EQ(core->calibration().items()[which::kHdg].table.rows.size(), 1U);
    EXPECT_EQ(location(), u"C:\\Programs\\Nav\\");
    EXPECT_FALSE(core->values().store(ZAN_HDG, Record::ofNumber(1.0), 0, kNoTime));
}

TEST_F(SecondStage, AnyFailingStepLeavesTheOthersDone) {
    useItem(which::kHdg);
    addFile(u"Hdg", "0\n0 3\n");
    const auto keeper = client();
    machine.failAnyOnce(0);
    host().reset();
    const int requests = machine.requests();
    ASSERT_GT(requests, 60);
    for (int nth = 3; nth <= requests; ++nth) { // behind making and mapping the section
        machine.failAnyOnce(nth);
        const auto core = host();
        ASSERT_NE(core->area(), nullptr) << nth;
        EXPECT_EQ(core->calibration().items()[which::kBaro].name, u"Baro") << nth;
    }
}

TEST_F(SecondStage, OutOfMemoryAnywhereTheHostStartsAllTheSame) {
    useItem(which::kHdg);
    addFile(u"Hdg", "0 10\n0 3 3\n");
    const auto keeper = client();
    const auto allocationsOf = [&](bool start) {
        const std::size_t before = allocationsMade();
        const CCore core(platform, start);
        return allocationsMade() - before;
    };
    machine.trace.reserve(1'000'000);
    const std::size_t before = allocationsOf(false);
    const std::size_t all = allocationsOf(true);
    ASSERT_GT(all, before + 100);
    for (std::size_t nth = before + 1; nth <= all; ++nth) {
        failAllocation(nth);
        CCore core(platform, true);
        failAllocation(0);
        ASSERT_NE(core.area(), nullptr) << nth;
        // Whole or empty or the default: never a table cut short.
        const double heading = stored(core, ZAN_HDG, 100.0);
        EXPECT_TRUE(heading == 103.0 || heading == 100.0) << nth << " " << heading;
        for (const CalibrationItem& item : core.calibration().items())
            for (const CurveRow& row : item.table.rows) ASSERT_EQ(row.dirty, 0);
    }
}

} // namespace
} // namespace tallowmere::test

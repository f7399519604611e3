// Later processes: they take the section as it is, and it lives as long as anyone holds it.
#include "core/config/alternate_table.hpp"
#include "tests/core/core_fixture.hpp"

namespace tallowmere::test {
namespace {

class CoreOpening : public CoreTest {
  protected:
    CoreOpening() {
        addUsersSettings(machine);
        addUsersFiles(machine);
    }
};

TEST_F(CoreOpening, ReadsNeitherSettingsNorFiles) {
    const auto first = start();
    machine.trace.clear();
    const auto second = start();
    EXPECT_THAT(machine.trace, ::testing::ElementsAre("CreateSection", "MapSection"));
    EXPECT_TRUE(first->madeSection());
    EXPECT_FALSE(second->madeSection());
    EXPECT_TRUE(second->setupDone());
}

TEST_F(CoreOpening, TouchesTheClockChannelOnly) {
    const auto first = start();
    RawSection raw = section();
    raw.put<std::uint32_t>(place::kBoatCount, 4);
    raw.put<std::uint8_t>(place::flag(22), 1); // a flag that blocks channels, but in hosts only
    raw.put<double>(place::variable(0), -5.0);
    raw.putText(place::kDataFolder, u"X:\\elsewhere");
    const auto before = raw.copy();
    machine.now += 999;
    const auto second = start();
    auto after = section().copy();
    copyClock(before, after);
    EXPECT_EQ(changesOutside(before, after,
                             {{place::compactStamp(0, 2), 8},
                              {place::compactValue(0, 2) + 8, 8},
                              {place::compactThird(0, 2) + 8, 8},
                              {place::compactStamp(0, 3), 8},
                              {place::compactValue(0, 3) + 8, 8},
                              {place::compactThird(0, 3) + 8, 8}}),
              "");
    EXPECT_EQ(section().get<std::int64_t>(place::fullStamp(0, 0)), machine.now);
    EXPECT_EQ(section().get<std::int64_t>(place::compactStamp(0, 3)), machine.now);
}

TEST_F(CoreOpening, SeesWhatTheOthersWrite) {
    const auto first = start();
    const auto second = start();
    EXPECT_TRUE(first->values().store(1, Record::ofNumber(6.4), 0, INT64_MAX));
    EXPECT_EQ(second->values().fetch(1, 0).record, Record::ofNumber(6.4));
    second->system().setVariable(3, 12.5);
    EXPECT_EQ(first->system().variable(3), 12.5);
}

TEST_F(CoreOpening, OfASectionStillFullOfZerosLeavesItSo) {
    const auto held = machine.holdSection(kSectionName, kSectionBytes); // its maker has not begun to fill it
    const auto core = start();
    auto after = section().copy();
    EXPECT_NE(core->area(), nullptr);
    const std::vector<std::uint8_t> zeros(kSectionBytes);
    copyClock(zeros, after);
    EXPECT_EQ(changesOutside(zeros, after, {}), "");
}

TEST_F(CoreOpening, SectionOutlivesItsMaker) {
    auto first = start();
    auto second = start();
    first->values().store(1, Record::ofNumber(6.4), 0, INT64_MAX);
    first.reset();
    EXPECT_TRUE(sectionLives());
    EXPECT_EQ(second->values().fetch(1, 0).record, Record::ofNumber(6.4));
    const auto third = start();
    EXPECT_FALSE(third->madeSection());
    EXPECT_EQ(third->values().fetch(1, 0).record, Record::ofNumber(6.4));
}

TEST_F(CoreOpening, AfterTheLastOneTheNextMakesANewSection) {
    auto first = start();
    auto second = start();
    first->values().store(1, Record::ofNumber(6.4), 0, INT64_MAX);
    second.reset();
    first.reset();
    EXPECT_FALSE(sectionLives());

    machine.addDouble(kCoreSettings, u"Sys_v3", 77.0); // read anew
    machine.trace.clear();
    const auto third = start();
    EXPECT_TRUE(third->madeSection());
    EXPECT_TRUE(asked("OpenSettings"));
    EXPECT_FALSE(third->values().fetch(1, 0).holdsValue);
    EXPECT_EQ(third->area()->boatCount, 0U);
    EXPECT_EQ(section().get<double>(place::variable(3)), 77.0);
}

} // namespace
} // namespace tallowmere::test

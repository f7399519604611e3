// When the section cannot be had, and when any one step of a start fails.
#include "core/channels/mob_mark.hpp"
#include "core/config/alternate_table.hpp"
#include "tests/core/core_fixture.hpp"

#include <bit>

namespace tallowmere::test {
namespace {

class CoreFailure : public CoreTest {
  protected:
    void expectNoData(CCore& core) {
        EXPECT_EQ(core.area(), nullptr);
        EXPECT_TRUE(core.setupDone());
        EXPECT_FALSE(core.values().store(1, Record::ofNumber(6.4), 0, INT64_MAX));
        EXPECT_EQ(core.values().fetch(1, 0).record, Record::ofNumber(32767.0));
        EXPECT_FALSE(core.values().fetch(1, 0).holdsValue);
        EXPECT_EQ(core.system().variable(0), 32767.0);
        EXPECT_EQ(core.system().flag(0), 0);
        EXPECT_FALSE(core.system().inMode(3, 0));
        EXPECT_EQ(raiseManOverboard(core.context(), 1.0, 2.0), 0);
        EXPECT_EQ(resolveAlternating(core.values(), 117), 117);
        EXPECT_EQ(resolveAlternating(core.values(), 414), 32767);
    }
    /// What was asked for, without conversions of text.
    [[nodiscard]] std::vector<std::string> steps() const {
        std::vector<std::string> found;
        for (const std::string& step : machine.trace)
            if (step != "Narrow" && step != "Widen") found.push_back(step);
        return found;
    }
    static constexpr char16_t kLogFile[] = u"\\log_system_22Nov2025.log"; // in the root: there is no data folder
};

TEST_F(CoreFailure, OfCreationIsShownLoggedAndEndsTheHost) {
    machine.failAlways(Step::CreateSection);
    machine.now += 14LL * 36'000'000'000 + 3LL * 600'000'000 + 27LL * 10'000'000; // 14:03:27
    auto core = start();
    EXPECT_THAT(steps(), ::testing::ElementsAre("CreateSection", "ShowError", "AppendLine", "PostQuit"));
    ASSERT_EQ(machine.errorsShown.size(), 1U);
    EXPECT_TRUE(machine.errorsShown[0] == u"Unable to create shared memory map");
    EXPECT_EQ(machine.quitsPosted, 1);
    ASSERT_EQ(machine.files.count(kLogFile), 1U);
    EXPECT_EQ(machine.files[kLogFile], "14:03:27 : Unable to create shared memory map\r\n");
    EXPECT_FALSE(core->madeSection());
    expectNoData(*core);
    machine.trace.clear();
    core.reset();
    EXPECT_TRUE(machine.trace.empty());
}

TEST_F(CoreFailure, OfMappingIsShownLoggedAndEndsTheHost) {
    machine.failAlways(Step::MapSection);
    auto core = start();
    EXPECT_THAT(steps(), ::testing::ElementsAre("CreateSection", "MapSection", "ShowError", "AppendLine", "PostQuit"));
    ASSERT_EQ(machine.errorsShown.size(), 1U);
    EXPECT_TRUE(machine.errorsShown[0] == u"Unable to map shared memory");
    EXPECT_EQ(machine.quitsPosted, 1);
    EXPECT_EQ(machine.files[kLogFile], "00:00:00 : Unable to map shared memory\r\n");
    expectNoData(*core);
}

TEST_F(CoreFailure, OfMappingKeepsTheSectionUntilTheEnd) {
    machine.failOnce(Step::MapSection);
    auto core = start();
    EXPECT_TRUE(sectionLives());
    core.reset();
    EXPECT_FALSE(sectionLives());
}

TEST_F(CoreFailure, SmallerSectionOfThatNameCannotBeMapped) {
    const auto held = machine.holdSection(kSectionName, 4096);
    auto core = start();
    ASSERT_EQ(machine.errorsShown.size(), 1U);
    EXPECT_TRUE(machine.errorsShown[0] == u"Unable to map shared memory");
    expectNoData(*core);
    core.reset();
    EXPECT_TRUE(sectionLives()); // the other's
}

TEST_F(CoreFailure, LeavesLaterStartsAlone) {
    machine.failOnce(Step::CreateSection);
    const auto failed = start();
    const auto good = start();
    EXPECT_NE(good->area(), nullptr);
    EXPECT_TRUE(good->madeSection());
    EXPECT_EQ(machine.quitsPosted, 1);
}

TEST_F(CoreFailure, EachNoticeIsGivenWhetherOrNotTheOthersWork) {
    for (Step broken : {Step::ShowError, Step::AppendLine, Step::PostQuit}) {
        MemoryMachine other;
        MemoryPlatform otherPlatform(other);
        other.failAlways(Step::CreateSection);
        other.failAlways(broken);
        const CCore core(otherPlatform, false);
        EXPECT_EQ(other.errorsShown.size(), broken == Step::ShowError ? 0U : 1U);
        EXPECT_EQ(other.files.count(kLogFile), broken == Step::AppendLine ? 0U : 1U);
        EXPECT_EQ(other.quitsPosted, broken == Step::PostQuit ? 0 : 1);
        EXPECT_EQ(core.area(), nullptr);
    }
}

TEST_F(CoreFailure, TwoFailuresAreTwoLines) {
    machine.failAlways(Step::CreateSection);
    { const auto core = start(); }
    { const auto core = start(); }
    EXPECT_EQ(machine.files[kLogFile], "00:00:00 : Unable to create shared memory map\r\n"
                                       "00:00:00 : Unable to create shared memory map\r\n");
}

TEST_F(CoreFailure, OfOneStepForGoodNeverStopsConstruction) {
    for (int step = static_cast<int>(Step::TimeZone); step <= static_cast<int>(Step::Widen); ++step) {
        MemoryMachine other;
        MemoryPlatform otherPlatform(other);
        addUsersSettings(other);
        addUsersFiles(other);
        other.failAlways(static_cast<Step>(step));
        const CCore core(otherPlatform, false);
        const bool noSection =
            step == static_cast<int>(Step::CreateSection) || step == static_cast<int>(Step::MapSection);
        EXPECT_EQ(core.area() == nullptr, noSection) << step;
        EXPECT_EQ(other.quitsPosted, noSection ? 1 : 0) << step;
    }
}

// --- any one step, the first, the second, ...

/// A section whose maker had these settings and files.
std::vector<std::uint8_t> sectionOf(bool withUsersSettings) {
    MemoryMachine machine;
    MemoryPlatform platform(machine);
    if (withUsersSettings) {
        addUsersSettings(machine);
        addUsersFiles(machine);
    }
    const CCore core(platform, false);
    return RawSection(machine.section(kSectionName)).copy();
}

bool isPathByte(std::size_t offset) {
    return (offset >= 24 && offset < 544) || (offset >= 608 && offset < 1648);
}

/// Every byte is as the user set it or as it is without the user's settings.
std::string bytesOfNeither(const std::vector<std::uint8_t>& bytes, const std::vector<std::uint8_t>& users,
                           const std::vector<std::uint8_t>& bare) {
    std::string found;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        if (!isPathByte(i) && bytes[i] != users[i] && bytes[i] != bare[i]) found += std::to_string(i) + " ";
    return found;
}

/// How many system variables, flags and integers differ.
int entriesThatDiffer(const std::vector<std::uint8_t>& a, const std::vector<std::uint8_t>& b) {
    const auto differs = [&](std::size_t offset, std::size_t size) {
        const auto from = static_cast<std::ptrdiff_t>(offset);
        return !std::equal(a.begin() + from, a.begin() + from + static_cast<std::ptrdiff_t>(size), b.begin() + from);
    };
    int count = 0;
    for (std::size_t i = 0; i < 80; ++i) count += differs(place::variable(i), 8);
    for (std::size_t i = 0; i < 13; ++i) count += differs(place::integer(i), 4);
    for (std::size_t i = 0; i < 60; ++i) count += differs(place::flag(i), 1);
    return count;
}

TEST(CoreStepFailure, LeavesTheDocumentedDefaultAndHarmsNothingElse) {
    const auto users = sectionOf(true);
    const auto bare = sectionOf(false);
    ASSERT_GT(entriesThatDiffer(users, bare), 50);
    int n = 1;
    for (;; ++n) {
        SCOPED_TRACE(n);
        ASSERT_LT(n, 5000);
        MemoryMachine machine;
        MemoryPlatform platform(machine);
        addUsersSettings(machine);
        addUsersFiles(machine);
        machine.trace.clear();
        machine.failAnyOnce(n);
        auto core = std::make_unique<CCore>(platform, false);
        if (machine.requests() < n) break; // nothing was left to fail
        const std::string step = machine.trace[static_cast<std::size_t>(n - 1)];
        SCOPED_TRACE(step);
        const bool noSection = step == "CreateSection" || step == "MapSection";
        EXPECT_EQ(core->area() == nullptr, noSection);
        EXPECT_EQ(machine.errorsShown.size(), noSection ? 1U : 0U);
        EXPECT_EQ(machine.quitsPosted, noSection ? 1 : 0);
        if (!noSection) {
            const RawSection raw(machine.section(kSectionName));
            EXPECT_EQ(bytesOfNeither(raw.copy(), users, bare), "");
            EXPECT_LE(entriesThatDiffer(raw.copy(), users), step == "OpenSettings" ? 173 : 1);
            for (std::size_t path : {place::kMarksPath, place::kDatabasePath, place::kDataFolder})
                EXPECT_LT(raw.text(path, 260).size(), 260U);
        }
        core.reset();
        EXPECT_EQ(machine.section(kSectionName), nullptr);

        const CCore next(platform, false); // the failure is over
        ASSERT_NE(next.area(), nullptr);
        EXPECT_EQ(changesOutside(users, RawSection(machine.section(kSectionName)).copy(), {}), "");
    }
    EXPECT_GT(n, 60); // there was something to fail
}

} // namespace
} // namespace tallowmere::test
